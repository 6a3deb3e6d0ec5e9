#include "app/bubble.h"

#include "app/modifier_keys.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QToolTip>
#include <QWidget>

namespace
{

/// The toolkit wraps rich text only.
QString wrapped(const QString& text)
{
    return text.isEmpty()
               ? text
               : QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")));
}

} // namespace

void showBubble(QWidget& control, const QString& text)
{
    // A place outside of the rectangle makes a bubble that is being closed a new one.
    const QPoint below = control.rect().bottomLeft() + QPoint(0, 1);
    QToolTip::showText(control.mapToGlobal(below), wrapped(text), &control, control.rect());
}

bool BubbleFilter::eventFilter(QObject* watched, QEvent* event)
{
    // Every key begins so, that of a shortcut, too.
    if (event->type() == QEvent::ShortcutOverride && !isModifier(static_cast<QKeyEvent*>(event)->key()))
        QToolTip::hideText();
    auto* const control = event->type() == QEvent::ToolTip ? qobject_cast<QWidget*>(watched) : nullptr;
    if (control == nullptr || control->toolTip().isEmpty())
        return false;
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), wrapped(control->toolTip()), control);
    return true;
}

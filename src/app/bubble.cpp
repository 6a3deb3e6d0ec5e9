#include "app/bubble.h"

#include <QApplication>
#include <QKeyEvent>
#include <QToolTip>
#include <QWidget>

#include <algorithm>
#include <iterator>

namespace
{

/// Closes the bubble at the next key, and goes with it. The toolkit itself closes a tooltip at a click and when the
/// focus moves, but not at a key.
class CloserByKey : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        constexpr int modifiers[] = {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_AltGr, Qt::Key_Meta};
        if (event->type() == QEvent::KeyPress &&
            std::ranges::find(modifiers, static_cast<QKeyEvent*>(event)->key()) == std::end(modifiers)) {
            QToolTip::hideText();
            deleteLater();
        }
        return false;
    }
};

} // namespace

void showBubble(QWidget& control, const QString& text)
{
    // A place outside of the rectangle makes a bubble that is being closed a new one.
    const QPoint below = control.rect().bottomLeft() + QPoint(0, 1);
    const QString wrapped = text.isEmpty() ? text : QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped());
    QToolTip::showText(control.mapToGlobal(below), wrapped, &control, control.rect());
    qApp->installEventFilter(new CloserByKey(&control));
}

#include "app/bubble.h"

#include "app/modifier_keys.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace
{

QPointer<QLabel> bubble;

/// The toolkit wraps rich text only.
QString wrapped(const QString& text)
{
    return QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")));
}

/// Below the control, or above it where the screen ends.
QPoint placeOf(const QWidget& control, QSize size)
{
    const QRect room = control.screen()->availableGeometry();
    const QPoint below = control.mapToGlobal(control.rect().bottomLeft()) + QPoint(0, 2);
    const QPoint above = control.mapToGlobal(QPoint()) - QPoint(0, size.height() + 2);
    const bool fits = below.y() + size.height() <= room.bottom();
    return {std::max(std::min(below.x(), room.right() - size.width()), room.left()), (fits ? below : above).y()};
}

void hideBubble()
{
    if (QLabel* const old = std::exchange(bubble, nullptr)) {
        old->hide();
        old->deleteLater(); // the click may be on it
    }
    QToolTip::hideText();
}

/// Whether an event begins what the user does next. Every key begins with an override, that of a shortcut, too.
bool isNextAct(const QObject& watched, const QEvent& event)
{
    switch (event.type()) {
        case QEvent::ShortcutOverride:
            return !isModifier(static_cast<const QKeyEvent&>(event).key());
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
            return true;
        case QEvent::WindowDeactivate:
        case QEvent::Move:
        case QEvent::Hide:
            return bubble != nullptr && &watched == bubble->parentWidget()->window();
        default:
            return false;
    }
}

} // namespace

void showBubble(QWidget& control, const QString& text)
{
    constexpr int leastTime = 10'000; // milliseconds, as a tooltip's
    constexpr int timeOfCharacter = 40;
    hideBubble();
    if (text.isEmpty())
        return;
    // Not a tooltip of the toolkit, which goes when the mouse moves, when it lies below, and when a dialog closes.
    bubble = new QLabel(wrapped(text), &control, Qt::ToolTip | Qt::WindowTransparentForInput);
    bubble->setAttribute(Qt::WA_ShowWithoutActivating);
    bubble->setFont(QToolTip::font());
    bubble->setPalette(QToolTip::palette());
    bubble->setForegroundRole(QPalette::ToolTipText);
    bubble->setBackgroundRole(QPalette::ToolTipBase);
    bubble->setAutoFillBackground(true);
    bubble->setFrameStyle(QFrame::Box | QFrame::Plain);
    bubble->setMargin(2);
    bubble->setWordWrap(true);
    bubble->adjustSize();
    bubble->move(placeOf(control, bubble->size()));
    bubble->show();
    QTimer::singleShot(leastTime + timeOfCharacter * static_cast<int>(text.size()), bubble, &QObject::deleteLater);
}

QString bubbleText()
{
    return bubble != nullptr ? bubble->text() : QString();
}

bool BubbleFilter::eventFilter(QObject* watched, QEvent* event)
{
    if (isNextAct(*watched, *event))
        hideBubble();
    auto* const control = event->type() == QEvent::ToolTip ? qobject_cast<QWidget*>(watched) : nullptr;
    if (control == nullptr || (control->toolTip().isEmpty() && bubble == nullptr))
        return false;
    if (bubble == nullptr) // else both would lie on one another
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), wrapped(control->toolTip()), control);
    return true;
}

#include "app/outcome.h"

#include "app/announcer.h"
#include "app/bubble.h"

#include <QTimer>

void tellOutcome(QWidget& control, const QString& text)
{
    const auto tell = [&control, text] {
        showBubble(control, text);
        control.window()->findChild<Announcer*>()->say(text);
    };
    constexpr int untilActive = 300; // milliseconds after a dialog: a window that becomes active closes its bubbles
    if (control.isActiveWindow())
        tell();
    else
        QTimer::singleShot(untilActive, &control, tell);
}

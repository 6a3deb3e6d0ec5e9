#include "app/outcome.h"

#include "app/announcer.h"
#include "app/bubble.h"

#include <QTimer>

void tellOutcome(QWidget& control, const QString& text)
{
    control.window()->findChild<Announcer*>()->say(text);
    // Milliseconds: bubbles are closed by a menu that closes, and by a window that becomes active after a dialog.
    constexpr int afterMenu = 100;
    constexpr int afterDialog = 300;
    QTimer::singleShot(control.isActiveWindow() ? afterMenu : afterDialog, &control,
                       [&control, text] { showBubble(control, text); });
}

#include "app/outcome.h"

#include "app/announcer.h"
#include "app/bubble.h"

void tellOutcome(QWidget& control, const QString& text)
{
    control.window()->findChild<Announcer*>()->say(text);
    showBubble(control, text);
}

#include "app/announcer.h"

#include <QAccessible>
#include <QTimer>

Announcer::Announcer(QWidget& form) : QWidget(&form)
{
    hide();
}

void Announcer::say(const QString& text)
{
    constexpr int afterFocus = 100; // milliseconds: what is said of a new focus would cut the text off
    if (text.isEmpty())
        return;
    setAccessibleName(text);
    QTimer::singleShot(afterFocus, this, [this] {
        QAccessibleEvent event(this, QAccessible::ObjectShow);
        QAccessible::updateAccessibility(&event);
    });
}

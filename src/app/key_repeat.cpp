#include "app/key_repeat.h"

#include <QAbstractButton>
#include <QKeyEvent>

bool KeyRepeatFilter::eventFilter(QObject* watched, QEvent* event)
{
    // A repeated key comes as released and pressed at the same time. Mostly the toolkit marks it as a repetition, but
    // not when the program was busy in between (seen in Qt 6.4 on X11).
    constexpr quint64 sameTime = 2; // milliseconds
    const bool isButton = qobject_cast<QAbstractButton*>(watched) != nullptr;
    switch (event->type()) {
        case QEvent::KeyRelease: {
            const auto* const key = static_cast<QKeyEvent*>(event);
            releasedKey_ = key->key();
            releasedAt_ = key->timestamp();
            return false;
        }
        case QEvent::ShortcutOverride: {
            const auto* const key = static_cast<QKeyEvent*>(event);
            const bool sinceRelease =
                releasedAt_ > 0 && key->key() == releasedKey_ && key->timestamp() - releasedAt_ <= sameTime;
            isRepeated_ = key->isAutoRepeat() || sinceRelease;
            return false;
        }
        case QEvent::Shortcut:
            return isRepeated_;
        case QEvent::KeyPress: {
            const int key = static_cast<QKeyEvent*>(event)->key();
            return isButton && isRepeated_ && (key == Qt::Key_Return || key == Qt::Key_Enter);
        }
        default:
            return false;
    }
}

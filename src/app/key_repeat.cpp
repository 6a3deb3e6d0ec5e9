#include "app/key_repeat.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>

#include <algorithm>
#include <iterator>

bool KeyRepeatFilter::eventFilter(QObject* watched, QEvent* event)
{
    // A repeated key comes as released and pressed at the same time. Mostly the toolkit marks it as a repetition, but
    // not when the program was busy in between (seen in Qt 6.4 on X11).
    constexpr quint64 sameTime = 2; // milliseconds
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
            if (!isRepeated_)
                beganAt_.clear();
            return false;
        }
        case QEvent::Shortcut:
            return isRepeated_;
        case QEvent::KeyPress: {
            auto* const target = qobject_cast<QWidget*>(watched);
            return target != nullptr && isRepeatedTooFar(*target, static_cast<QKeyEvent*>(event)->key());
        }
        default:
            return false;
    }
}

/// A press that nobody wants goes on from a control to its parents: the first to see it is where it began.
bool KeyRepeatFilter::isRepeatedTooFar(QWidget& target, int key)
{
    if (!isRepeated_ && beganAt_.isNull())
        beganAt_ = &target;
    constexpr int focusMovers[] = {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down};
    if (!isRepeated_ || std::ranges::find(focusMovers, key) != std::end(focusMovers))
        return false;
    const bool isButton = qobject_cast<QAbstractButton*>(&target) != nullptr;
    return isButton || beganAt_.isNull() || !(beganAt_ == &target || target.isAncestorOf(beganAt_));
}

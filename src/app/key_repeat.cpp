#include "app/key_repeat.h"

#include "app/modifier_keys.h"

#include <QAbstractButton>
#include <QKeyEvent>

#include <algorithm>
#include <iterator>
#include <utility>

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
            if (isModifier(key->key())) // another key may be held meanwhile
                return false;
            const bool sinceRelease =
                releasedAt_ > 0 && key->key() == releasedKey_ && key->timestamp() - releasedAt_ <= sameTime;
            isRepeated_ = key->isAutoRepeat() || sinceRelease;
            if (!isRepeated_) {
                beganAt_.clear();
                hasBegun_ = false;
            }
            // The gas box opens and closes its list at this event.
            return isRepeated_ && (key->key() == Qt::Key_F4 || key->modifiers().testFlag(Qt::AltModifier));
        }
        case QEvent::Shortcut: {
            const bool isFirst = !std::exchange(hasBegun_, true);
            return isRepeated_ && !isFirst;
        }
        case QEvent::KeyPress: {
            auto* const target = qobject_cast<QWidget*>(watched);
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (target == nullptr || isModifier(key))
                return false;
            // While a screen reader listens, a press comes later than its override, and after that of an equal key.
            const bool isFirst = !std::exchange(hasBegun_, true);
            if (isFirst)
                beganAt_ = target; // a press that nobody wants goes on to the parents: the first counts
            return isRepeated_ && !isFirst && isTooFar(*target, key);
        }
        default:
            return false;
    }
}

/// Whether a repeated key has left the control where it began.
bool KeyRepeatFilter::isTooFar(QWidget& target, int key) const
{
    constexpr int focusMovers[] = {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down};
    if (std::ranges::find(focusMovers, key) != std::end(focusMovers))
        return false;
    if (qobject_cast<QAbstractButton*>(&target) != nullptr || beganAt_.isNull())
        return true;
    // A list that completes an entry stands for the box that it belongs to.
    const bool isOneControl = target.focusProxy() == beganAt_ || beganAt_->focusProxy() == &target;
    return beganAt_ != &target && !target.isAncestorOf(beganAt_) && !isOneControl;
}

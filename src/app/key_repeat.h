#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

/// A key that is held acts once and ends where it began: else a held "Prin&t" prints page after page, a held
/// "&Continue" goes on to clear the next form, and Enter held on a refused sizing beeps in the box that gets the focus.
/// Only keys that move the focus (Tab, arrows) go on in the next control, and shortcuts and buttons never repeat.
/// Installed on the application.
class KeyRepeatFilter : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isTooFar(QWidget& target, int key) const;

    int releasedKey_ = 0;
    quint64 releasedAt_ = 0;    ///< milliseconds of the window system
    bool isRepeated_ = false;   ///< of the key that was pressed last
    bool hasBegun_ = true;      ///< whether its first press has come to a widget or a shortcut
    QPointer<QWidget> beganAt_; ///< the widget that got its first press; null: a shortcut took it
};

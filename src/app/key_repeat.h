#pragma once

#include <QObject>

/// Lets a shortcut, an access key, and Enter on a button act once, however long the key is held: else a held
/// "Prin&t" prints page after page, and a held "&Continue" goes on to clear the next form. Installed on the
/// application.
class KeyRepeatFilter : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int releasedKey_ = 0;
    quint64 releasedAt_ = 0;  ///< milliseconds of the window system
    bool isRepeated_ = false; ///< of the key that was pressed last
};

#pragma once

#include <QObject>

/// Beeps for a character that no entry of an open menu has as its access key, as Windows does by itself; else the
/// character would be lost in silence. Installed on the application.
class MenuBell : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

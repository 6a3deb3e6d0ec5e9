#pragma once

#include <QWidget>

/// Has a screen reader say a text, whatever has the focus: to it, the text is a notification of the form. Nothing is
/// seen of it.
class Announcer : public QWidget
{
    Q_OBJECT

public:
    explicit Announcer(QWidget& form);

    /// Says the text after what else happens now, such as a change of the focus; "" says nothing.
    void say(const QString& text);
};

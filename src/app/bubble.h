#pragma once

#include <QObject>

class QString;
class QWidget;

/// Shows a text in a bubble below a control; "" shows nothing. The bubble takes no key and no click: the next one
/// closes it and does what it would have done without it. Left alone, it closes by itself.
void showBubble(QWidget& control, const QString& text);

/// Closes bubbles and tooltips at the next key, which the toolkit does only at a click and when the focus moves, and
/// wraps the text of tooltips. Installed on the application.
class BubbleFilter : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

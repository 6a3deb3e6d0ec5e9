#pragma once

#include <QObject>

class QString;
class QWidget;

/// Shows a text in a bubble below a control; "" shows nothing. The bubble takes no key: the next one closes it and
/// does what it would have done without it, and so does a click beside it. Left alone, it closes by itself.
void showBubble(QWidget& control, const QString& text);

/// What the bubble shows now, in HTML; "" when there is none.
QString bubbleText();

/// Closes bubbles and tooltips at the next key or click, and wraps the text of tooltips. Installed on the application.
class BubbleFilter : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

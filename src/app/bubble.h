#pragma once

class QString;
class QWidget;

/// Shows a text in a bubble below a control; "" shows nothing. The bubble takes no key and no click: the next one
/// closes it and does what it would have done without it. Left alone, it closes by itself.
void showBubble(QWidget& control, const QString& text);

#pragma once

class QString;
class QWidget;

/// Has what a press has come to seen in a bubble below a control, and heard by a screen reader.
void tellOutcome(QWidget& control, const QString& text);

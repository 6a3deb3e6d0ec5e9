#pragma once

#include <QGroupBox>

/// A group box whose caption interrupts its border, so that the whole of its stated rectangle belongs to it.
class Frame : public QGroupBox
{
    Q_OBJECT

public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent* event) override;
};

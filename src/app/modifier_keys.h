#pragma once

#include <Qt>

/// Whether a key does nothing by itself, such as Shift.
constexpr bool isModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_AltGr ||
           key == Qt::Key_Meta;
}

#pragma once

#include "base/main_screen.h"

#include <QString>

class NumberText;
struct SizingState;

/// What a text must be to be taken as a number.
QString helpOfNumbers(const SizingState& state, const NumberText& numbers);

/// What a box of the main form means, in which unit, and what is taken, for the choices in the record.
QString helpOf(Box box, const SizingState& state, const NumberText& numbers);

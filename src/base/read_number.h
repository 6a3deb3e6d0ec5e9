#pragma once

#include "base/failure.h"
#include "base/number_text.h"

/// A text as a number in the user's locale; a text that is none is a type mismatch.
inline double readNumber(const NumberText& numbers, const std::string& text)
{
    const auto value = numbers.parse(text);
    if (!value)
        throw TypeMismatch();
    return *value;
}

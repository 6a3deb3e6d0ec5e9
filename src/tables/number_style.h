#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// A text that should be a number, and where it stands.
struct NumberField
{
    std::string text;
    std::size_t line;
};

/// How the numbers of a table are written.
struct NumberStyle
{
    char decimalMark = '.';
    std::string fault;    ///< why they cannot be read in exactly one way; "" when they can
    std::string expected; ///< then what it should look like
    std::size_t line = 0;

    /// The number without thousands separators, with a decimal point.
    std::string plain(const std::string& text) const;
};

/// Finds how numbers are written beside a separator of columns: with semicolons and tabs they may have a decimal comma.
/// Where they cannot be read in one way, the style is the likelier one, so that the rest can be looked at.
NumberStyle findNumberStyle(const std::vector<NumberField>& numbers, char separator);

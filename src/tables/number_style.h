#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// A text that should be a number, and its line.
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
    std::string expected; ///< in case of a fault: what numbers should look like
    std::size_t line = 0;

    /// The number without thousands separators, with a decimal point.
    std::string plain(const std::string& text) const;
};

/// Finds how the numbers of a table are written. Where columns are separated by semicolons or tabs,
/// numbers may have a decimal comma. When they can be read in two ways, it gives the likelier one:
/// so the rest of the table can be checked.
NumberStyle findNumberStyle(const std::vector<NumberField>& numbers, char separator);

#pragma once

#include "lists/duty_columns.h"

#include <array>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

class NumberText;
struct FreshSizing;

/// A row that cannot be entered on the screens, and why.
struct CannotBeEntered : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// What a row has for every column, in their order; "" where the list has no such column.
using Entries = std::array<std::string, std::size(listColumns)>;

/// The sizing that a row asks for, before the click: the choices of the setup screen and the boxes of the main form.
/// Throws CannotBeEntered.
FreshSizing enteredOn(const Entries& entries, const NumberText& numbers);

/// "A", "A or B", "A, B or C".
std::string listed(const std::vector<std::string>& names);

#pragma once

#include "engine/fresh_sizing.h"
#include "lists/list_header.h"

#include <stdexcept>

/// A row that cannot be entered on the screens, and why.
struct CannotBeEntered : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// The sizing that a row asks for, before the click: the choices of the setup screen and the boxes of the main form.
/// Units that the header says hold for every row. Throws CannotBeEntered.
FreshSizing enteredOn(const Entries& entries, const ListHeader& header, const NumberText& numbers);

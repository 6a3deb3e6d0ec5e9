#pragma once

#include "app/sizing_state.h"
#include "base/customer_fields.h"
#include "base/main_screen.h"

#include <algorithm>
#include <string>
#include <variant>

/// The choices of the setup screen.
enum class Choice
{
    valveModel,
    valveType,
    sizingMethod,
    unitSystem,
    pressUnits,
};

/// A column that a list may have and what it is entered into.
struct ListColumn
{
    const char* name;
    bool isNumber;
    std::variant<Choice, Box, std::string SizingState::*> target;
};

/// The column of a text about the customer.
inline ListColumn columnOf(std::string SizingState::*customerText)
{
    return {std::ranges::find(customerFields, customerText, &CustomerField::text)->name, false, customerText};
}

/// All of them. A list may have them in any order.
inline const ListColumn listColumns[] = {
    columnOf(&SizingState::CustTagNo),
    {"Valve Model", false, Choice::valveModel},
    {"Valve Type", false, Choice::valveType},
    {"Sizing Method", false, Choice::sizingMethod},
    {"Units of Measure", false, Choice::unitSystem},
    {"Units of Pressure", false, Choice::pressUnits},
    {"Pump Rate", true, Box::txtPumpRate},
    {"Pressure", true, Box::txtPressure},
    {"Tank Volume", true, Box::txtTankVolume},
    {"Gas", false, Box::cmbBlanketingGas},
    {"Specific Gravity", true, Box::txtSpecGrav},
    {"Boiling Point", true, Box::txtBoilingPoint},
    {"Flash Point", true, Box::txtFlashPoint},
    {"Material", false, Box::txtStoredMaterial},
    columnOf(&SizingState::CustomerName),
    columnOf(&SizingState::CustomerLocation),
    columnOf(&SizingState::Notes),
    columnOf(&SizingState::Representative),
};

#pragma once

#include "app/sizing_state.h"
#include "base/customer_fields.h"
#include "base/main_screen.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

struct UnitSystem;

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
constexpr ListColumn customerColumn(std::string SizingState::*text)
{
    return {std::ranges::find(customerFields, text, &CustomerField::text)->name, false, text};
}

/// All of them. A list may have them in any order.
inline constexpr ListColumn listColumns[] = {
    customerColumn(&SizingState::CustTagNo),
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
    customerColumn(&SizingState::CustomerName),
    customerColumn(&SizingState::CustomerLocation),
    customerColumn(&SizingState::Notes),
    customerColumn(&SizingState::Representative),
};

/// What a row has for every one of `listColumns`; "" where the list has no such column.
using Entries = std::array<std::string_view, std::size(listColumns)>;

/// The place in `listColumns` of what is entered into `target`.
template <typename Target>
constexpr std::size_t columnOf(Target target)
{
    const auto isIt = [&](const ListColumn& column) {
        return std::holds_alternative<Target>(column.target) && std::get<Target>(column.target) == target;
    };
    return static_cast<std::size_t>(std::ranges::find_if(listColumns, isIt) - listColumns);
}

/// The unit in the header of a column, as in "Pump Rate [m3/h]" and "Pressure (kPa)".
struct HeaderUnit
{
    const UnitSystem* system = nullptr; ///< nullptr: the header says nothing of it
    const char* pressure = nullptr;     ///< as the setup screen lists it; nullptr: the header does not say it
};

/// The column that a header names.
struct NamedColumn
{
    std::size_t number;             ///< in `listColumns`
    std::string unitText;           ///< "": the header has none
    std::optional<HeaderUnit> unit; ///< nullopt: no unit of this column
};

/// The column that a header names, with or without a unit; nullopt when it is none of `listColumns`. Upper and lower
/// case are alike.
std::optional<NamedColumn> namedColumn(std::string_view header);

/// Whether a header is only a unit: a comma has separated it from its column, as in "Tank Volume, m3".
bool isUnitAlone(std::string_view header);

/// The units that the header of a column may have: "gpm or m3/Hr".
std::string unitsFor(std::size_t column);

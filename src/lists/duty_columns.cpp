#include "lists/duty_columns.h"

#include "base/offered.h"
#include "files/csv_reader.h"
#include "lists/words.h"

#include <vector>

namespace
{

/// Other ways to write a unit of the screens.
constexpr struct
{
    std::string_view written; ///< as `plain` leaves it
    const char* unit;
} otherSpellings[] = {
    {"usgpm", "gpm"},         {"gal/min", "gpm"},     {"m3/h", "m3/Hr"},       {"cbm/h", "m3/Hr"},
    {"psig", "PSI"},          {"lb/in2", "PSI"},      {"inh2o", "in wc"},      {"kpag", "kPa"},
    {"kgf/cm2", "kg/cm2"},    {"mbarg", "mbar"},      {"gal", "Gallons"},      {"usgal", "Gallons"},
    {"usgallons", "Gallons"}, {"m3", "Cubic Meters"}, {"cbm", "Cubic Meters"}, {"cubicmetres", "Cubic Meters"},
    {"f", "Fahrenheit"},      {"degf", "Fahrenheit"}, {"c", "Celcius"},        {"degc", "Celcius"},
    {"celsius", "Celcius"},
};

/// A unit in one way of writing: small letters, without blanks, points and degree signs, raised figures as plain ones.
std::string plain(std::string_view unit)
{
    constexpr struct
    {
        std::string_view sign;
        std::string_view instead;
    } signs[] = {{" ", ""},      {"\u00A0", ""}, {".", ""},       {"^", ""},
                 {"\u00B0", ""}, {"\u00BA", ""}, {"\u00B2", "2"}, {"\u00B3", "3"}};
    std::string text;
    for (unit = trimmed(unit); !unit.empty();) {
        const auto sign = std::ranges::find_if(signs, [&](const auto& one) { return unit.starts_with(one.sign); });
        if (sign != std::end(signs))
            text += sign->instead;
        else
            text += lowerCase(unit.front());
        unit.remove_prefix(sign != std::end(signs) ? sign->sign.size() : 1);
    }
    for (const auto& other : otherSpellings)
        if (text == other.written)
            return plain(other.unit);
    return text;
}

/// The member that names the unit of a box. nullptr for the pressure, which has several units, and for a box without
/// unit.
const char* UnitSystem::*unitName(Box box)
{
    switch (box) {
        case Box::txtPumpRate:
            return &UnitSystem::pumpRate;
        case Box::txtTankVolume:
            return &UnitSystem::volume;
        case Box::txtBoilingPoint:
        case Box::txtFlashPoint:
            return &UnitSystem::temperature;
        default:
            return nullptr;
    }
}

std::optional<HeaderUnit> unitOf(const ListColumn& column, std::string_view text)
{
    const std::string wanted = plain(text);
    const Box box = std::get<Box>(column.target);
    if (box == Box::txtSpecGrav && (wanted == "air=1" || wanted == "-"))
        return HeaderUnit{};
    if (box == Box::txtPressure)
        for (const Offer& offer : offers)
            if (plain(offer.pressUnits) == wanted)
                return HeaderUnit{unitsOf(offer.unitSystem), offer.pressUnits};
    if (const char* UnitSystem::*const name = unitName(box); name != nullptr)
        for (const UnitSystem& units : unitSystems)
            if (plain(units.*name) == wanted)
                return HeaderUnit{&units, nullptr};
    return std::nullopt;
}

/// The text in brackets, or behind a comma or a slash; nullopt when `rest` has none of these.
std::optional<std::string_view> setApart(std::string_view rest)
{
    const std::string_view signs = "[](),/";
    const std::size_t open = signs.find(rest.front());
    if (open == std::string_view::npos || open == 1 || open == 3)
        return std::nullopt;
    rest.remove_prefix(1);
    if (open > 3)
        return trimmed(rest);
    if (!rest.ends_with(signs[open + 1]))
        return std::nullopt;
    rest.remove_suffix(1);
    return trimmed(rest);
}

} // namespace

std::optional<NamedColumn> namedColumn(std::string_view header)
{
    header = trimmed(header);
    for (std::size_t number = 0; number < std::size(listColumns); ++number) {
        const ListColumn& column = listColumns[number];
        const std::string_view name = column.name;
        if (!isAlike(header.substr(0, name.size()), name))
            continue;
        const std::string_view rest = trimmed(header.substr(name.size()));
        if (rest.empty())
            return NamedColumn{number, "", HeaderUnit{}};
        if (!column.isNumber)
            continue;
        if (const auto text = setApart(rest))
            return NamedColumn{number, std::string(*text), unitOf(column, *text)};
        for (const std::string_view text : {rest, rest.starts_with("in ") ? rest.substr(3) : rest})
            if (const auto unit = unitOf(column, text))
                return NamedColumn{number, std::string(text), unit};
    }
    return std::nullopt;
}

bool isUnitAlone(std::string_view header)
{
    return std::ranges::any_of(listColumns, [&](const ListColumn& column) {
        const auto unit = column.isNumber ? unitOf(column, header) : std::nullopt;
        return unit && unit->system != nullptr;
    });
}

std::string unitsFor(std::size_t column)
{
    std::vector<std::string> names;
    const auto add = [&](const char* name) {
        if (std::ranges::find(names, name) == names.end())
            names.emplace_back(name);
    };
    const Box box = std::get<Box>(listColumns[column].target);
    for (const Offer& offer : offers)
        if (box == Box::txtPressure)
            add(offer.pressUnits);
    if (const char* UnitSystem::*const name = unitName(box); name != nullptr)
        for (const UnitSystem& units : unitSystems)
            add(units.*name);
    if (box == Box::txtSpecGrav)
        add("air = 1");
    return listed(names);
}

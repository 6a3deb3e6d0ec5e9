#pragma once

#include <algorithm>
#include <limits>
#include <string_view>

// What can be chosen: the choices by name, and one table of what is built for which of them. Setup lists, table name,
// pressure checks and `build_capacities` read it: a new valve model or pressure unit is a few rows here.

/// The choices, by the texts that the screens show. They travel as these and are compared whole.
namespace choice
{

inline constexpr const char* us = "US";
inline constexpr const char* metric = "Metric";
inline constexpr const char* pad = "Pad";
inline constexpr const char* depad = "Depad";
inline constexpr const char* api2000 = "API-2000";
inline constexpr const char* directDisplacement = "Direct Displacement";
inline constexpr const char* series61 = "Series 61";
inline constexpr const char* series63 = "Series 63";

} // namespace choice

/// Valve type and sizing method, joined by a blank.
namespace sizing_case
{

inline constexpr const char* padApi2000 = "Pad API-2000";
inline constexpr const char* padDirectDisplacement = "Pad Direct Displacement";
inline constexpr const char* depadApi2000 = "Depad API-2000";
inline constexpr const char* depadDirectDisplacement = "Depad Direct Displacement";

} // namespace sizing_case

/// The units of one unit system, but for that of pressure.
struct UnitSystem
{
    const char* name;
    const char* option; ///< the text of its option on the setup screen
    const char* pumpRate;
    const char* flow; ///< of gas
    const char* temperature;
    const char* volume;
    char degrees;
};

inline constexpr UnitSystem unitSystems[] = {
    {choice::us, "U.S. Units", "gpm", "SCFH", "Fahrenheit", "Gallons", 'F'},
    {choice::metric, "Metric Units", "m3/Hr", "Nm3/Hr", "Celcius", "Cubic Meters", 'C'},
};

/// A unit of pressure.
struct PressureUnit
{
    const char* name;
    double pascal;
};

inline constexpr PressureUnit pressureUnits[] = {
    {"PSI", 6894.757}, {"in wc", 249.08891}, {"kg/cm2", 98066.5}, {"kPa", 1000}, {"mbar", 100},
};

/// When a model's user is not advised to lower the pressure of a valve that is hardly used.
struct Model
{
    const char* name;
    double lowestPressure; ///< up to here, in whatever unit the user chose; lowest supply pressure in PSI
    float depadShare;      ///< share of the capacity below which it holds for a depad valve
};

inline constexpr Model models[] = {
    {choice::series61, 1, 0.2F},
    {choice::series63, 25, 0.5F},
};

/// The supply pressure below which valves above a Cv are refused.
struct MinimumPressure
{
    double lowest = 0;             ///< this one passes
    float exemptUpToCv = 0;        ///< valves up to this Cv are free of the rule
    const char* message = nullptr; ///< nullptr: there is no rule
};

inline constexpr float halfInchCv = 0.4F; // the largest Cv of the 1/2 inch body; the stored body size is not consulted
inline constexpr float noneExempt = -std::numeric_limits<float>::infinity();

/// One pressure unit offered for one valve model and type. Pressures are in that unit: supply pressure for pad valves,
/// differential pressure for depad valves.
struct Offer
{
    const char* valveModel;
    const char* valveType;
    const char* unitSystem;
    const char* pressUnits;
    const char* valveTable; ///< the capacity table
    double lowest;          ///< of the working range; both ends pass
    double highest;
    const char* message; ///< shown for a pressure outside
    MinimumPressure minimum = {};
};

/// In the order of the setup screen's lists. The models differ in 1.76 and 1.8 kg/cm2 and in "require" as they stand: a
/// Series 63 valve between the two pressures passes the range and breaks the rule.
// clang-format off
inline constexpr Offer offers[] = {
    {choice::series61, choice::pad, choice::us, "PSI", "psi_Pad",
     1, 200, "Supply Pressure must be between 1 and 200 PSI.",
     {25, halfInchCv, "Series 61 valves larger than 1/2 inch must have a minimum supply pressure of 25 psi."}},
    {choice::series61, choice::pad, choice::metric, "kg/cm2", "kgcm2_Pad",
     0.07, 14.06, "Supply Pressure must be between 0.07 and 14.06 kg/cm2.",
     {1.8, halfInchCv, "Series 61 valves larger than 1/2 inch must have a minimum supply pressure of 1.8 kg/cm2."}},
    {choice::series61, choice::pad, choice::metric, "kPa", "kpa_Pad",
     6.9, 1379, "Supply Pressure must be between 6.9 and 1379 kPa.",
     {172, halfInchCv, "Series 61 valves larger than 1/2 inch must have a minimum supply pressure of 172 kPa."}},
    {choice::series63, choice::pad, choice::us, "PSI", "psi_Pad",
     25, 200, "Supply Pressure must be between 25 and 200 PSI.",
     {25, noneExempt, "Series 63 valves must have a minimum supply pressure of 25 psi."}},
    {choice::series63, choice::pad, choice::metric, "kg/cm2", "kgcm2_Pad",
     1.76, 14.06, "Supply Pressure must be between 1.76 and 14.06 kg/cm2.",
     {1.8, noneExempt, "Series 63 valves must have a minimum supply pressure of 1.8 kg/cm2."}},
    {choice::series63, choice::pad, choice::metric, "kPa", "kpa_Pad",
     172, 1379, "Supply Pressure must be between 172 and 1379 kPa.",
     {172, noneExempt, "Series 63 valves require a minimum supply pressure of 172 kPa."}},
    {choice::series63, choice::depad, choice::us, "PSI", "psi_Depad",
     0.07, 2.8, "Differential Pressure must be between 0.07 and 2.8 PSI."},
    {choice::series63, choice::depad, choice::us, "in wc", "inwc_Depad",
     2, 77, "Differential Pressure must be between 2 and 77 in wc."},
    {choice::series63, choice::depad, choice::metric, "mbar", "mbar_Depad",
     5, 193, "Differential Pressure must be between 5 and 193 mbar."},
};
// clang-format on

/// The row of a unit system; nullptr for any other name.
constexpr const UnitSystem* unitsOf(std::string_view unitSystem)
{
    for (const UnitSystem& units : unitSystems)
        if (unitSystem == units.name)
            return &units;
    return nullptr;
}

/// Whether a model is built as a valve type.
constexpr bool isOffered(std::string_view valveModel, std::string_view valveType)
{
    return std::ranges::any_of(
        offers, [&](const Offer& offer) { return valveModel == offer.valveModel && valveType == offer.valveType; });
}

/// The offer of a pressure unit for a model and a valve type; nullptr where there is none.
constexpr const Offer* findOffer(std::string_view valveModel, std::string_view valveType, std::string_view pressUnits)
{
    for (const Offer& offer : offers)
        if (valveModel == offer.valveModel && valveType == offer.valveType && pressUnits == offer.pressUnits)
            return &offer;
    return nullptr;
}

/// Whether a table above has a row of that name.
constexpr bool isNamed(const auto& rows, std::string_view name)
{
    return std::ranges::any_of(rows, [&](const auto& row) { return name == row.name; });
}

/// Whether a row names a table and a range that can be, and whether it is found again. A model without a pad valve
/// would leave the setup form without a choice.
constexpr bool isSound(const Offer& offer)
{
    const std::string_view type = offer.valveType;
    return isOffered(offer.valveModel, choice::pad) && (type == choice::pad || type == choice::depad) &&
           std::string_view(offer.valveTable).ends_with(type) && offer.lowest < offer.highest &&
           findOffer(offer.valveModel, type, offer.pressUnits) == &offer;
}
static_assert(std::ranges::all_of(offers, isSound));
static_assert(std::ranges::all_of(offers, [](const Offer& offer) { return isNamed(models, offer.valveModel); }),
              "a model that is offered has a row in models");
static_assert(std::ranges::all_of(models, [](const Model& model) { return isOffered(model.name, choice::pad); }),
              "a model has rows in offers");
static_assert(std::ranges::all_of(offers, [](const Offer& offer) { return isNamed(unitSystems, offer.unitSystem); }),
              "a unit system that is offered has a row in unitSystems");
static_assert(std::ranges::all_of(offers, [](const Offer& offer) { return isNamed(pressureUnits, offer.pressUnits); }),
              "a pressure unit that is offered has a row in pressureUnits");

#include "tables/flow_units.h"

#include "base/offered.h"
#include "base/text.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

// SCFH are at 60 degF and 14.696 psia, Nm3/h at 0 degC and 101.325 kPa.
constexpr double nm3h = 1 / 0.026793;

struct Unit
{
    std::string_view name;
    char kind; // p: pressure, in Pa; f: flow, in SCFH; v: volume, in m3; m: mass flow, in kg/h
    double size;
};
/// Beside the pressure units that are offered (base/offered.h).
// clang-format off
constexpr Unit units[] = {
    {"psig", 'p', 6894.757}, {"lb/in2", 'p', 6894.757}, {"bar", 'p', 1e5},
    {"barg", 'p', 1e5}, {"bar g", 'p', 1e5}, {"mbarg", 'p', 100}, {"hpa", 'p', 100},
    {"kpag", 'p', 1000}, {"mpa", 'p', 1e6}, {"pa", 'p', 1}, 
    {"kg/cm²", 'p', 98066.5}, {"kgf/cm2", 'p', 98066.5}, {"kgf/cm²", 'p', 98066.5}, {"at", 'p', 98066.5},
    {"inwc", 'p', 249.08891}, {"inh2o", 'p', 249.08891}, {"in h2o", 'p', 249.08891},
    {"mmh2o", 'p', 9.80665}, {"mm h2o", 'p', 9.80665}, {"mmws", 'p', 9.80665}, {"scfh", 'f', 1},
    {"scfm", 'f', 60}, {"scfd", 'f', 1.0 / 24}, {"mscfh", 'f', 1000}, {"nm3/h", 'f', nm3h},
    {"nm³/h", 'f', nm3h}, {"nm3/hr", 'f', nm3h}, {"nm³/hr", 'f', nm3h}, {"nm3/min", 'f', 60 * nm3h},
    {"nl/min", 'f', 0.06 * nm3h}, {"sm3/h", 'f', nm3h / 1.0549}, {"sm³/h", 'f', nm3h / 1.0549},
    {"kg/h", 'm', 1}, {"lb/h", 'm', 0.45359237}, {"lb/hr", 'm', 0.45359237}, {"gal", 'v', 0.003785411784}, {"gallons", 'v', 0.003785411784}, {"bbl", 'v', 0.158987295},
    {"m3", 'v', 1}, {"m³", 'v', 1}, {"l", 'v', 0.001},
};
// clang-format on

constexpr std::optional<Unit> unitNamed(std::string_view text)
{
    for (const std::string_view bracket : {"[", "("})
        text.remove_prefix(text.starts_with(bracket) ? 1 : 0);
    for (const std::string_view bracket : {"]", ")"})
        text.remove_suffix(text.ends_with(bracket) ? 1 : 0);
    const auto isIt = [&](const auto& unit) { return equalsInAnyCase(unit.name, text); };
    if (const auto offered = std::ranges::find_if(pressureUnits, isIt); offered != std::end(pressureUnits))
        return Unit{offered->name, 'p', offered->pascal};
    const auto other = std::ranges::find_if(units, isIt);
    return other == std::end(units) ? std::nullopt : std::optional(*other);
}

/// A usual mistake, and the factor by which it makes flows wrong.
struct Cause
{
    double factor;
    const char* text;
    const char* unitSystem = nullptr; ///< nullptr: of both
    const char* valveType = nullptr;
};
constexpr Cause causes[] = {
    {24, "per day?"},
    {60, "per minute?"},
    {1.0 / 60, "per minute?"},
    {1.0 / 24, "divided by 24, as if per day?"},
    {nm3h, "SCFH for Nm3/h?", choice::metric},
    {1 / nm3h, "Nm3/h for SCFH?", choice::us},
    {35.315, "cubic feet for m3?", choice::metric},
    {1 / 35.315, "m3 for cubic feet?", choice::us},
    {1000.0 / 60, "litres per minute?", choice::metric},
    {1.0549, "at 15 degC?", choice::metric}, // 288.15 K / 273.15 K
    {1.0732, "at 20 degC?", choice::metric},
    {1.0874, "at 20 degC and 1 bar?", choice::metric},
    {0.9461, "at 0 degC?", choice::us},             // 491.67 degR / 519.67 degR
    {1.2504, "kg/h?", choice::metric, choice::pad}, // kg per Nm3 of nitrogen, and of air
    {1.2929, "kg/h, or natural gas for air?", choice::metric, choice::depad},
    {0.0738, "lb/h?", choice::us, choice::pad}, // lb per standard cubic foot
    {0.0763, "lb/h?", choice::us, choice::depad},
    {1.2715, "natural gas for nitrogen?", nullptr, choice::pad}, // root of 0.97 / 0.6
    {1.291, "natural gas for air?", choice::us, choice::depad},
    {3.72, "hydrogen for nitrogen?", nullptr, choice::pad},        // 0.07
    {0.796, "carbon dioxide for nitrogen?", nullptr, choice::pad}, // 1.53
    {0.865, "for Kv in place of Cv?"},                             // Cv = 1.156 Kv
    {1.156, "Cv taken for Kv?"},
    {1000, "litres, or a decimal mark taken for a thousands separator?"},
    {0.001, "a thousands separator taken for a decimal mark?"},
    {10, "a decimal place?"},
    {0.1, "a decimal place?"},
    {100, "two decimal places?"},
    {0.01, "two decimal places?"},
};

double awayBy(double factor, const Cause& cause)
{
    return std::abs(std::log(factor / cause.factor));
}

} // namespace

double pascalPer(std::string_view pressUnits)
{
    return unitNamed(pressUnits)->size;
}

double scfhPer(std::string_view unitSystem)
{
    return unitSystem == choice::us ? 1 : nm3h;
}

double gallonsPer(std::string_view unitSystem)
{
    return unitSystem == choice::us ? 1 : 1 / 0.003785411784;
}

double computedFlow(const ValveTableSpec& table, double cv, double pressure)
{
    constexpr double atmosphere = 14.696;                             // psia
    constexpr double temperature = 519.67;                            // degR: 60 degF
    constexpr double factor = 1360;                                   // SCFH for Cv, psia and degR
    constexpr double choked = 0.72;                                   // share of P1; a larger drop adds no flow
    const double gravity = table.valveType == choice::pad ? 0.97 : 1; // nitrogen and air
    const double drop = pressure * pascalPer(table.pressUnits) / pascalPer("PSI");
    const double inlet = atmosphere + drop;
    const double share = std::min(drop / inlet, choked);
    return factor * cv * inlet * (1 - share / (3 * choked)) * std::sqrt(share / (gravity * temperature)) /
           scfhPer(table.unitSystem);
}

std::string likelyCause(const ValveTableSpec& table, double factor, double tolerance)
{
    const Cause* likeliest = nullptr;
    for (const Cause& cause : causes) {
        const bool isOther = (cause.unitSystem != nullptr && table.unitSystem != cause.unitSystem) ||
                             (cause.valveType != nullptr && table.valveType != cause.valveType);
        if (!isOther && awayBy(factor, cause) <= std::log(1 + tolerance) &&
            (likeliest == nullptr || awayBy(factor, cause) < awayBy(factor, *likeliest)))
            likeliest = &cause;
    }
    return likeliest == nullptr ? "" : likeliest->text;
}

bool isUnit(std::string_view text)
{
    return unitNamed(trimmed(text)).has_value();
}

std::optional<double> factorTo(std::string_view given, std::string_view wanted, bool isNitrogen)
{
    const std::optional<Unit> from = unitNamed(trimmed(given));
    const std::optional<Unit> to = unitNamed(wanted);
    if (!from || !to)
        return std::nullopt;
    if (from->kind == to->kind)
        return from->size / to->size;
    if (from->kind == 'm' && to->kind == 'f')
        return nm3h / (isNitrogen ? 1.2504 : 1.2929) / to->size; // kg per Nm3 of nitrogen or air
    return std::nullopt;
}

#pragma once

#include <array>

struct SizingContext;

/// One row of working limits: the pressures, in `pressUnits`, that a valve model accepts. Both ends pass.
struct PressureRange
{
    const char* valveModel;
    const char* valveType; ///< nullptr: either type
    const char* pressUnits;
    double lowest;
    double highest;
    const char* message; ///< shown when the entered pressure lies outside
};

/// Working pressure limits of the two models, in the user's own unit (supply pressure for pad valves, differential
/// pressure for depad valves).
inline constexpr std::array<PressureRange, 9> pressureRanges{{
    {"Series 61", nullptr, "PSI", 1, 200, "Supply Pressure must be between 1 and 200 PSI."},
    {"Series 61", nullptr, "kg/cm2", 0.07, 14.06, "Supply Pressure must be between 0.07 and 14.06 kg/cm2."},
    {"Series 61", nullptr, "kPa", 6.9, 1379, "Supply Pressure must be between 6.9 and 1379 kPa."},
    {"Series 63", "Pad", "PSI", 25, 200, "Supply Pressure must be between 25 and 200 PSI."},
    {"Series 63", "Pad", "kg/cm2", 1.76, 14.06, "Supply Pressure must be between 1.76 and 14.06 kg/cm2."},
    {"Series 63", "Pad", "kPa", 172, 1379, "Supply Pressure must be between 172 and 1379 kPa."},
    {"Series 63", "Depad", "PSI", 0.07, 2.8, "Differential Pressure must be between 0.07 and 2.8 PSI."},
    {"Series 63", "Depad", "mbar", 5, 193, "Differential Pressure must be between 5 and 193 mbar."},
    {"Series 63", "Depad", "in wc", 2, 77, "Differential Pressure must be between 2 and 77 in wc."},
}};

/// Refuses a pressure outside the model's range: writes the range's message into `lblComments` and sets `SizingError`.
/// A combination of model, type and unit without a range passes.
void modMaxMinCheck(SizingContext& sizing);

#pragma once

#include "base/offered.h"

#include <array>
#include <cmath>
#include <limits>
#include <string_view>

/// A listed gas and its specific gravity (air = 1), in the order of the gas list. The first two are those that the
/// capacity tables are for; a new gas comes after them.
struct Gas
{
    const char* name;
    float specGrav;
};

inline constexpr std::array<Gas, 4> gases{{
    {"Nitrogen", 0.97F},
    {"Air", 1.0F},
    {"Dry CO2", 1.52F},
    {"Natural Gas", 0.6F},
}};

/// The gas that a valve type starts with: the one that its capacity tables are for. Nitrogen for anything else.
inline const Gas& firstGas(std::string_view valveType)
{
    return valveType == choice::depad ? gases[1] : gases[0];
}

/// The listed gas of a specific gravity, compared at single precision; "" for any other.
inline const char* gasOf(double specGrav)
{
    if (std::fabs(specGrav) <= std::numeric_limits<float>::max())
        for (const Gas& gas : gases)
            if (static_cast<float>(specGrav) == gas.specGrav)
                return gas.name;
    return "";
}

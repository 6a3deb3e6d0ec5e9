#pragma once

#include <array>

/// A listed gas and its specific gravity (air = 1), in the order of the gas list.
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

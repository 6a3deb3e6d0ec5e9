#pragma once

#include "base/offered.h"

#include <array>
#include <span>
#include <string_view>

/// The flow coefficients (Cv, US units) each valve type is built in, smallest first. Held at single precision:
/// a selected Cv is found again by exact equality.
inline constexpr std::array padCvSeries{0.2F, 0.4F, 1.0F, 2.0F, 4.0F, 7.5F, 10.0F, 20.0F, 45.0F, 60.0F};
inline constexpr std::array depadCvSeries{3.0F,  6.0F,   12.0F,  17.0F,  20.0F,  35.0F, 70.0F,
                                          90.0F, 115.0F, 140.0F, 150.0F, 200.0F, 280.0F};

/// The series of a valve type; empty for none.
inline std::span<const float> cvSeries(std::string_view valveType)
{
    if (valveType == choice::pad)
        return padCvSeries;
    if (valveType == choice::depad)
        return depadCvSeries;
    return {};
}

#pragma once

#include "base/failure.h"

#include <cmath>
#include <cstdint>
#include <limits>

// Floating-point arithmetic never raises by itself; these do, so that a routine's handler sees the failure.

/// a / b. Throws DivisionByZero when b is 0, whatever a is.
inline double divide(double a, double b)
{
    if (b == 0)
        throw DivisionByZero();
    return a / b;
}

/// Square root; a negative value is a silent failure.
inline double squareRoot(double value)
{
    if (value < 0)
        throw SilentFailure("square root of a negative value");
    return std::sqrt(value);
}

/// The nearest single-precision value; one beyond its range is a silent failure.
inline float toSingle(double value)
{
    if (!(std::fabs(value) <= std::numeric_limits<float>::max()))
        throw SilentFailure("overflow of a single");
    return static_cast<float>(value);
}

/// The nearest whole number, halves to the even neighbour; one outside `Whole` is a silent failure.
template <typename Whole = std::int32_t>
Whole toWhole(double value)
{
    const double nearest = std::nearbyint(value); // the default rounding mode: halves to even
    if (!(nearest >= std::numeric_limits<Whole>::min() && nearest <= std::numeric_limits<Whole>::max()))
        throw SilentFailure("overflow of a whole number");
    return static_cast<Whole>(nearest);
}

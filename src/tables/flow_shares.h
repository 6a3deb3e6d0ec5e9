#pragma once

#include "tables/table_checks.h"

#include <cmath>
#include <optional>
#include <vector>

// Flows are compared as shares of what the flow equation gives for the Cv at the pressure. A share
// changes little with the pressure, so it can be interpolated between the rows of a coarse table.
// Shares are logarithms: a factor between two flows is the difference of their shares.

/// A row with a figure of its own. Rows on the straight line between their neighbours have none.
struct Point
{
    const CapacityRow* row;
    double pascal;
    double share;
    double rounding; ///< of the flow, as a share of it
};
using Points = std::vector<Point>;

/// The rows of a Cv with figures of their own, by pressure.
Points pointsOf(const ValveTable& table, float cv, const Curve& curve);

/// The share at a pressure, with the larger rounding of the two points around it; nullopt beyond
/// the points.
struct Share
{
    double value;
    double rounding;
};
std::optional<Share> shareAt(const Points& points, double pascal);

/// The middle one of some values; there must be one.
double median(std::vector<double> values);

/// How far a row is off what most tables give for its valve at its pressure.
struct Deviation
{
    float cv;
    const Point* point;
    double value;
    double rounding;
};
using Deviations = std::vector<Deviation>;

/// Right tables of one valve differ by at most this share beside their rounding.
inline constexpr double ownShare = 0.015;

/// The middle deviation of some rows.
struct Middle
{
    double value;
    double rounding;

    /// `share` of the rounding is left in the middle: less of it, the more rows there are.
    bool isOff(double share) const { return std::abs(value) > ownShare + share * rounding; }
};
Middle middleOf(const Deviations& deviations);

#pragma once

#include "tables/table_checks.h"

#include <optional>
#include <vector>

// Flows are compared as shares of what the flow equation gives for the Cv at the pressure. A share changes little with
// the pressure, so that it can be read between the rows of a coarse table. Shares are held as logarithms: a factor is a
// difference.

/// A row that was measured, not laid on the straight line between its neighbours.
struct Point
{
    const CapacityRow* row;
    double pascal;
    double share;
    double rounding; ///< of the flow, as a share of it
};
using Points = std::vector<Point>;

/// The measured rows of a Cv, by pressure.
Points pointsOf(const ValveTable& table, float cv, const Curve& curve);

/// The share at a pressure, with the larger rounding of the points around it; nullopt beyond them.
struct Share
{
    double value;
    double rounding;
};
std::optional<Share> shareAt(const Points& points, double pascal);

/// The middle one of some values; there must be one.
double median(std::vector<double> values);

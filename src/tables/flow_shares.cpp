#include "tables/flow_shares.h"

#include "tables/flow_units.h"

#include <algorithm>

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

Points pointsOf(const ValveTable& table, float cv, const Curve& curve)
{
    Points points;
    for (auto here = curve.begin(); here != curve.end(); ++here) {
        const CapacityRow& row = *here->second;
        if (row.pressure <= 0 || row.flow <= 0 || isOnLine(curve, here))
            continue;
        points.push_back({&row, row.pressure * pascalPer(table.spec.pressUnits),
                          std::log(row.flow / computedFlow(table.spec, cv, row.pressure)),
                          table.rounding.unit(row.flow) / 2 / row.flow});
    }
    return points;
}

std::optional<Share> shareAt(const Points& points, double pascal)
{
    constexpr double same = 1.001; // 14.06 kg/cm2 are 1378.8 kPa, and 1379 in a table
    if (points.empty() || pascal * same < points.front().pascal || pascal > points.back().pascal * same)
        return std::nullopt;
    const auto above = std::ranges::lower_bound(points, pascal, {}, &Point::pascal);
    if (above == points.begin() || above == points.end()) {
        const Point& end = above == points.end() ? points.back() : points.front();
        return Share{end.share, end.rounding};
    }
    const auto below = std::prev(above);
    const double place = std::log(pascal / below->pascal) / std::log(above->pascal / below->pascal);
    return Share{std::lerp(below->share, above->share, place), std::max(below->rounding, above->rounding)};
}

Middle middleOf(const Deviations& deviations)
{
    std::vector<double> values;
    std::vector<double> roundings;
    for (const Deviation& one : deviations) {
        values.push_back(one.value);
        roundings.push_back(one.rounding);
    }
    return {median(values), median(roundings)};
}

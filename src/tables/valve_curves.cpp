#include "tables/valve_curves.h"

#include "base/number_text.h"
#include "base/offered.h"
#include "tables/findings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace
{

int decadeOf(double value)
{
    return static_cast<int>(std::floor(std::log10(value)));
}

} // namespace

std::optional<double> flowAt(const Curve& curve, double pressure)
{
    return valueAt(curve, pressure, &CapacityRow::flow);
}

void Rounding::add(double value)
{
    if (value <= 0)
        return;
    const std::string text = numberText(value);
    const std::size_t last = text.find_last_not_of("0.");
    const std::size_t point = std::min(text.find('.'), text.size());
    const int place = last < point ? static_cast<int>(point - last) - 1 : -static_cast<int>(last - point);
    Decade& decade = decades_[decadeOf(value)];
    if (decade.count++ == 0 || place < decade.place) {
        decade.onlyHalves = text[last] == '5';
        decade.place = place;
    } else if (place == decade.place) {
        decade.onlyHalves &= text[last] == '5';
    }
}

double Rounding::unit(double value) const
{
    const auto decade = value > 0 ? decades_.find(decadeOf(value)) : decades_.end();
    if (decade == decades_.end())
        return 0;
    const auto& [first, seen] = *decade;
    // A single figure like 2000 does not prove that all are rounded to thousands. The larger ones
    // do.
    const bool isFew = seen.count < 3;
    const auto larger = std::next(decade);
    const int place =
        isFew ? std::min(seen.place, larger != decades_.end() ? larger->second.place : first - 1) : seen.place;
    return std::pow(10, place) * (seen.onlyHalves && !isFew ? 5 : 1);
}

bool isOnLine(const Curve& curve, Curve::const_iterator row)
{
    if (row == curve.begin() || std::next(row) == curve.end())
        return false;
    const auto [below, above] = std::pair(std::prev(row), std::next(row));
    const double place = (row->first - below->first) / (above->first - below->first);
    const double onLine = std::lerp(below->second->flow, above->second->flow, place);
    return std::abs(row->second->flow - onLine) < 1e-9 * onLine;
}

bool isLookedUp(double cv)
{
    const NumberText numbers;
    const float selected = cv > std::numeric_limits<float>::max() ? 0 : static_cast<float>(cv);
    return selected > 0 && numbers.parse(numbers.general(selected)) == cv;
}

double lowestPressureOf(const ValveTableSpec& table, float cv)
{
    double lowest = table.highest;
    for (const Offer& offer : offers)
        if (offer.valveTable == table.name)
            lowest = std::min(lowest, cv > offer.minimum.exemptUpToCv ? std::max(offer.lowest, offer.minimum.lowest)
                                                                      : offer.lowest);
    return lowest;
}

std::vector<Step> stepsOf(const ValveTableSpec& table, const Curves& curves)
{
    std::vector<Step> steps;
    for (auto chosen = curves.begin(); chosen != curves.end(); ++chosen) {
        const auto place = std::ranges::find(table.cvSeries, chosen->first);
        const bool isStepped = place != table.cvSeries.end() && std::next(place) != table.cvSeries.end();
        const float steppedTo = isStepped ? *std::next(place) : chosen->first;
        // A larger Cv outside the series may pass, too.
        if (const auto passing = curves.upper_bound(steppedTo); passing != curves.end())
            steps.push_back({chosen, steppedTo, lowestPressureOf(table, passing->first)});
    }
    return steps;
}

double passedAfterStep(const Step& step, const Curves& curves, double pressure)
{
    const auto stepped = curves.find(step.steppedTo);
    return stepped == curves.end() ? 0 : flowAt(stepped->second, pressure).value_or(0);
}

std::string roughly(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return numeral(std::strtod(text, nullptr));
}

std::string numeral(double value)
{
    return messageText(numberText(value));
}

std::string cvText(float cv)
{
    return "CV " + NumberText().general(cv);
}

std::string lineText(std::size_t line)
{
    return line > 0 ? " (line " + std::to_string(line) + ')' : " (filled)";
}

#include "tables/complete_tables.h"

#include "base/offered.h"
#include "tables/findings.h"
#include "tables/valve_curves.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <set>

namespace
{

constexpr Rule rowsFilled{Severity::note, "rows filled", "they lie on the straight line between the rows around them"};
constexpr Rule pressuresLaid{Severity::note, "pressures laid between those of the table",
                             "their rows lie on the straight line between the rows around them"};

// The largest ratio of neighbouring pressures; data/generate_nominal_tables.py says why.
constexpr double padStep = 1.25;
constexpr double depadStep = 1.1;
constexpr double asIs = 1.01; // a ratio may be larger by this much: pressures are rounded
constexpr int mostParts = 50; // of one interval; no number is enough for two equal flows

/// Whether one step of the Cv is enough everywhere between two pressures when their interval is
/// divided evenly into `parts`. Flows lie on straight lines there, so it is enough to look at the
/// first and the last part.
bool isCloseEnough(const std::vector<Step>& steps, const Curves& curves, double low, double high, int parts)
{
    const double width = (high - low) / parts;
    for (const Step& step : steps) {
        if (high <= step.lowest)
            continue;
        for (const double from : {low, high - width}) {
            const auto chosen = flowAt(step.chosen->second, from + width);
            if (chosen && flowAt(step.chosen->second, from) && passedAfterStep(step, curves, from) < *chosen)
                return false;
        }
    }
    return true;
}

/// The pressures that are to be added between those of a table.
std::set<double> pressuresBetween(const ValveTableSpec& table, const Curves& curves, const std::set<double>& pressures)
{
    const double largest = table.valveType == choice::pad ? padStep : depadStep;
    const std::vector<Step> steps = stepsOf(table, curves);
    std::set<double> laid;
    for (auto high = pressures.begin(); high != pressures.end(); ++high) {
        if (high == pressures.begin() || *high <= table.lowest || *std::prev(high) >= table.highest)
            continue;
        const double low = *std::prev(high);
        const double wanted =
            *high > low * largest * asIs ? std::ceil((*high - low) / (low * (largest - 1)) - 1e-9) : 1;
        int parts = static_cast<int>(std::min<double>(wanted, mostParts));
        const int enough = parts;
        while (parts < mostParts && !isCloseEnough(steps, curves, low, *high, parts))
            ++parts;
        if (!isCloseEnough(steps, curves, low, *high, parts))
            parts = enough;
        for (int part = 1; part < parts; ++part) {
            char text[32];
            std::snprintf(text, sizeof text, "%.4g", low + (*high - low) * part / parts);
            laid.insert(std::strtod(text, nullptr));
        }
    }
    return laid;
}

void completeTable(const ValveTableSpec& table, Table<CapacityRow>& read, Findings& findings)
{
    Curves curves;
    std::set<double> pressures;
    for (const CapacityRow& row : read.rows)
        if (isLookedUp(row.cv)) { // any other Cv is refused later
            curves[static_cast<float>(row.cv)].emplace(row.pressure, &row);
            pressures.insert(row.pressure);
        }
    const std::set<double> laid = pressuresBetween(table, curves, pressures);
    pressures.insert(laid.begin(), laid.end());
    if (curves.size() * pressures.size() > mostRows) {
        findings.report(tooManyRows, read.source, 0,
                        std::to_string(curves.size()) + " CVs at " + std::to_string(pressures.size()) + " pressures",
                        atMostRows);
        read.isReadable = false;
        return;
    }
    std::vector<CapacityRow> added;
    for (const auto& [cv, curve] : curves) {
        std::size_t count = 0;
        for (const double pressure : pressures) {
            const auto flow = flowAt(curve, pressure);
            if (!flow || curve.contains(pressure))
                continue;
            const CapacityRow& above = *curve.lower_bound(pressure)->second;
            added.push_back({0, pressure, *flow, above.bodySize, above.cv});
            count += !laid.contains(pressure);
        }
        if (count > 0)
            findings.report(rowsFilled, read.source, 0, cvText(cv) + ": " + std::to_string(count));
    }
    if (!laid.empty())
        findings.report(pressuresLaid, read.source, 0,
                        std::to_string(laid.size()) + ", from " + numeral(*laid.begin()) + " to " +
                            numeral(*laid.rbegin()) + ' ' + std::string(table.pressUnits));
    read.rows.insert(read.rows.end(), added.begin(), added.end());
}

} // namespace

void completeTables(CapacityTables& tables, Findings& findings)
{
    for (const ValveTableSpec& table : valveTableSpecs())
        if (Table<CapacityRow>& read = tables.valves.at(std::string(table.name)); read.isReadable)
            completeTable(table, read, findings);
}

#include "tables/body_sizes.h"
#include "tables/findings.h"
#include "tables/table_checks.h"

#include "capacity/cv_series.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Checks one valve table.
class ValveTableCheck
{
public:
    ValveTableCheck(const ValveTableSpec& spec, const Table<CapacityRow>& read, Findings& findings)
        : table_{spec, &read, {}, {}}, findings_(findings)
    {
    }

    ValveTable run()
    {
        checkRows();
        for (const auto& [cv, curve] : table_.curves)
            for (auto row = curve.begin(); row != curve.end(); ++row)
                if (!isOnLine(curve, row)) // a row on the line is computed, not rounded
                    table_.rounding.add(row->second->flow);
        table_.isUsable = table_.read->isReadable && !table_.curves.empty();
        if (table_.isUsable) {
            checkPressures();
            checkRange();
            for (const auto& [cv, curve] : table_.curves)
                checkCurve(cv, curve);
            for (auto cv = table_.curves.begin(); std::next(cv) != table_.curves.end(); ++cv)
                compare(*cv, *std::next(cv));
            checkSeries();
        }
        return std::move(table_);
    }

private:
    void report(const Rule& rule, std::size_t line, const std::string& found, const std::string& expected = "") const
    {
        findings_.report(rule, table_.read->source, line, line > 0 ? found : found + " (filled)", expected);
    }
    void reportTable(const Rule& rule, const std::string& found, const std::string& expected = "") const
    {
        findings_.report(rule, table_.read->source, 0, found, expected);
    }

    std::string units() const { return ' ' + std::string(table_.spec.pressUnits); }
    std::string at(double pressure) const { return " at Pressure " + numeral(pressure) + units(); }
    double unitOf(double flow) const { return table_.rounding.unit(flow); }

    static constexpr Rule flowIsZero{Severity::error, "a flow of 0", "correct it, or delete the row"};
    static constexpr Rule cvIsNeverFound{Severity::error, "a CV that the program cannot look up", "correct the CV"};
    static constexpr Rule rowStandsTwice{Severity::error, "a row stands twice", "delete one of the two"};

    void checkRows()
    {
        for (const CapacityRow& row : table_.read->rows) {
            if (row.flow <= 0)
                report(flowIsZero, row.line, "flow " + numeral(row.flow), "more than 0");
            if (!isLookedUp(row.cv)) {
                report(cvIsNeverFound, row.line, "CV " + numeral(row.cv), "0.0001 or more, at most seven digits");
                continue;
            }
            const auto cv = static_cast<float>(row.cv);
            const auto [same, added] = table_.curves[cv].emplace(row.pressure, &row);
            if (!added)
                report(rowStandsTwice, row.line,
                       cvText(cv) + at(row.pressure) + " has a row already" + lineText(same->second->line),
                       "one row for each CV and Pressure");
        }
    }

    static constexpr Rule rowsAreMissing{
        Severity::error, "rows are missing",
        "build with --complete, which fills the rows between a CV's own, or add the rows"};

    /// The program takes the first row at or above the duty's pressure, whatever its Cv. A Cv
    /// without a row there would be skipped. Below the lowest pressure that a Cv may have, it needs
    /// only the last of these rows.
    void checkPressures()
    {
        Curve all; // the first row of each pressure
        for (const auto& [cv, curve] : table_.curves)
            all.insert(curve.begin(), curve.end());
        for (const auto& [cv, curve] : table_.curves) {
            auto first = all.upper_bound(lowestPressureOf(table_.spec, cv));
            first = first == all.begin() ? first : std::prev(first);
            std::string missing;
            std::size_t count = 0;
            for (; first != all.end(); ++first)
                if (!curve.contains(first->first) && ++count <= 5)
                    missing += (count > 1 ? ", " : "") + numeral(first->first) + lineText(first->second->line);
            if (count == 0)
                continue;
            isGrid_ = false;
            if (count > 5)
                missing += " and " + std::to_string(count - 5) + " more";
            report(rowsAreMissing, curve.begin()->second->line,
                   cvText(cv) + " has no row for Pressure " + missing + ", which other CVs have",
                   "the same pressures for all CVs");
        }
    }

    static constexpr Rule noPressureInRange{Severity::error, "no pressure that the program accepts",
                                            "look at the unit"};
    static constexpr Rule rangeNotCovered{Severity::warning, "pressures are missing",
                                          "add rows, or every valve is refused beyond them"};

    void checkRange() const
    {
        const CapacityRow* lowest = nullptr;  // of the Cv that begins too high by most
        const CapacityRow* highest = nullptr; // of the Cv that ends first
        double late = 1;
        double wanted = 0;
        for (const auto& [cv, curve] : table_.curves) {
            const double from = lowestPressureOf(table_.spec, cv);
            const CapacityRow* const first = curve.begin()->second;
            const CapacityRow* const last = curve.rbegin()->second;
            if (first->pressure > late * from) {
                late = first->pressure / from;
                wanted = from;
                lowest = first;
            }
            if (highest == nullptr || last->pressure < highest->pressure)
                highest = last;
        }
        const std::string range = numeral(table_.spec.lowest) + " to " + numeral(table_.spec.highest) + units() +
                                  ", which the program accepts";
        if (highest->pressure < table_.spec.lowest || (lowest != nullptr && lowest->pressure > table_.spec.highest)) {
            const CapacityRow& first = lowest != nullptr ? *lowest : *table_.curves.begin()->second.begin()->second;
            report(noPressureInRange, first.line,
                   "Pressure goes from " + numeral(first.pressure) + " to " + numeral(highest->pressure), range);
            return;
        }
        if (lowest != nullptr)
            report(rangeNotCovered, lowest->line,
                   "Pressure of " + cvText(static_cast<float>(lowest->cv)) + " begins at " + numeral(lowest->pressure),
                   numeral(wanted) + units());
        if (highest->pressure < table_.spec.highest)
            report(rangeNotCovered, highest->line, "Pressure ends at " + numeral(highest->pressure),
                   numeral(table_.spec.highest) + units());
    }

    static constexpr Rule flowFalls{Severity::error, "a flow falls as the pressure rises",
                                    "correct the figure that is wrong"};
    static constexpr Rule flowGrowsOddly{Severity::warning, "a flow grows too little or too much with the pressure",
                                         "look for a slip in flow or pressure"};

    /// A flow grows at least like the fourth root of the pressure and at most like its power of
    /// 1.5. Two percent and the rounding of the figures are allowed in addition.
    void checkGrowth(float cv, const CapacityRow& from, const CapacityRow& to) const
    {
        const double ratio = from.pressure > 0 ? to.pressure / from.pressure : 1;
        const double rounding = unitOf(from.flow) / 2 + unitOf(to.flow) / 2;
        const double least = std::max(from.flow, from.flow * std::pow(ratio, 0.25) * 0.98 - rounding);
        const double most = from.flow * std::pow(ratio, 1.5) * 1.02 + rounding;
        const bool falls = to.flow < from.flow;
        const bool staysOddly =
            to.flow == from.flow && from.flow * (std::pow(ratio, 0.25) - 1) > rounding && from.pressure > 0;
        if (!falls && !staysOddly && ((to.flow >= least && to.flow <= most) || from.pressure <= 0))
            return;
        report(falls ? flowFalls : flowGrowsOddly, to.line,
               "flow " + numeral(to.flow) + at(to.pressure) + ", " + cvText(cv) + ", after " + numeral(from.flow) +
                   at(from.pressure) + lineText(from.line),
               roughly(from.flow * std::pow(ratio, 0.25)) + " to " + roughly(most));
    }

    static constexpr Rule twoSizesOfOneCv{Severity::error, "a CV has two body sizes", "correct the one that is wrong"};

    void checkCurve(float cv, const Curve& curve) const
    {
        const CapacityRow& first = *curve.begin()->second;
        const CapacityRow* before = nullptr;
        for (const auto& [pressure, row] : curve) {
            if (row->bodySize != first.bodySize)
                report(twoSizesOfOneCv, row->line, "Bodysize " + messageText(row->bodySize) + " of " + cvText(cv),
                       messageText(first.bodySize) + " as elsewhere" + lineText(first.line));
            if (before != nullptr)
                checkGrowth(cv, *before, *row);
            before = row;
        }
    }

    static constexpr Rule flowNotAboveSmallerCv{Severity::error, "a flow does not rise with the CV",
                                                "correct the figure that is wrong"};

    /// Two Cvs may have the same flow when rounding has removed the difference. A list of two digits that was converted
    /// to other units no longer shows its rounding: up to 5 %.
    void compare(const Curves::value_type& smaller, const Curves::value_type& larger) const
    {
        for (const auto& [pressure, row] : larger.second) {
            const auto beside = smaller.second.find(pressure);
            if (beside == smaller.second.end() || row->flow > beside->second->flow)
                continue;
            const double other = beside->second->flow;
            const double half = std::max(unitOf(other) / 2, 0.05 * other);
            if (row->flow == other && (other - half) * larger.first / smaller.first <= 1.02 * (other + half))
                continue;
            report(flowNotAboveSmallerCv, row->line,
                   "flow " + numeral(row->flow) + at(pressure) + ", " + cvText(larger.first) + ", beside " +
                       numeral(other) + " of " + cvText(smaller.first) + lineText(beside->second->line),
                   "about " + roughly(other * larger.first / smaller.first));
        }
    }

    static constexpr Rule otherSeries{Severity::error, "the CVs are not those of the valve type",
                                      "look whether this is the table of another valve type"};
    static constexpr Rule outsideSeries{Severity::warning, "a CV outside the series of its valve type",
                                        "correct it, or know that the program never steps up from it or to it"};
    static constexpr Rule cvWithoutRows{Severity::warning, "a CV of the series has no rows", "add its rows"};

    void checkSeries() const
    {
        const auto isIn = [](std::span<const float> series, float cv) {
            return std::ranges::find(series, cv) != series.end();
        };
        const auto& series = table_.spec.cvSeries;
        const std::span<const float> other =
            cvSeries(table_.spec.valveType == choice::pad ? choice::depad : choice::pad);
        std::size_t own = 0;
        std::size_t others = 0;
        for (const auto& [cv, curve] : table_.curves) {
            own += isIn(series, cv);
            others += isIn(other, cv);
        }
        if (others > own) {
            reportTable(otherSeries,
                        std::to_string(others) + " of " + std::to_string(table_.curves.size()) +
                            " CVs are those of the other type",
                        "the CVs of a " + std::string(table_.spec.valveType) + " valve");
            return;
        }
        for (const auto& [cv, curve] : table_.curves)
            if (!isIn(series, cv))
                report(outsideSeries, curve.begin()->second->line, cvText(cv));
        for (const float cv : series)
            if (!table_.curves.contains(cv))
                reportTable(cvWithoutRows, cvText(cv));
        if (isGrid_)
            checkSteps();
    }

    static constexpr Rule oneStepIsTooLittle{
        Severity::warning, "flows that a valve passes are refused, because the program steps the CV up once only",
        "build with --complete, which lays pressures in between"};

    void checkSteps() const
    {
        std::size_t count = 0;
        double widest = 0;
        std::string where;
        std::size_t line = 0;
        for (const Step& step : stepsOf(table_.spec, table_.curves)) {
            const Curve& chosen = step.chosen->second;
            for (auto below = chosen.begin(); std::next(below) != chosen.end(); ++below) {
                const CapacityRow& above = *std::next(below)->second;
                if (above.pressure <= step.lowest || below->first >= table_.spec.highest)
                    continue;
                const double from = std::max(below->first, step.lowest);
                const double reached = passedAfterStep(step, table_.curves, from);
                if (above.flow - reached <= unitOf(above.flow))
                    continue;
                ++count;
                if (above.flow - reached > widest * above.flow) {
                    widest = (above.flow - reached) / above.flow;
                    line = above.line;
                    where = "just above Pressure " + numeral(from) + ", " + cvText(step.chosen->first) +
                            " is chosen for flows below " + numeral(above.flow) + lineText(above.line) +
                            (step.steppedTo != step.chosen->first ? " and stepped to " + cvText(step.steppedTo)
                                                                  : " and not stepped up") +
                            ", which passes " + numeral(reached) + " there";
                }
            }
        }
        if (count > 0)
            report(oneStepIsTooLittle, line,
                   std::to_string(count) + (count == 1 ? " place" : " places, the widest") + ": " + where);
    }

    ValveTable table_;
    Findings& findings_;
    bool isGrid_ = true;
};

} // namespace

ValveTable checkValveTable(const ValveTableSpec& spec, const Table<CapacityRow>& read, Findings& findings)
{
    return ValveTableCheck(spec, read, findings).run();
}

#include "tables/findings.h"
#include "tables/flow_shares.h"
#include "tables/flow_units.h"
#include "tables/table_checks.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double rowShare = 0.03;               // of a single row; ownShare is that of many
constexpr double cvRounding = 0.5;              // so much of the rounding is left over a Cv's rows
constexpr double tableRounding = 0.25;          // and over all rows
const double mostOverEquation = std::log(1.22); // xT = 1 gives 1.18 times the flow of xT = 0.72
const double leastOfEquation = std::log(1.0 / 3);
const double mostAtLowPressure = std::log(1.1); // below `lowPressure`, xT = 1 gives 1.05 times
constexpr double lowPressure = 54'000;          // Pa; there, a third of the inlet pressure is lost
const double mostBetweenCvs = std::log(1.3);
const double mostOfRow = std::log(2);

constexpr const char* lookAtUnits = "look at unit, gas, reference conditions and columns";

std::string factorText(double logarithm)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.3g", std::exp(logarithm));
    return numeral(std::strtod(text, nullptr)) + " times";
}

/// Compares the tables of one valve type.
class FlowComparison
{
public:
    FlowComparison(const std::vector<ValveTable>& tables, Findings& findings)
        : tables_(tables), points_(tables.size()), isOff_(tables.size()), findings_(findings)
    {
        for (std::size_t at = 0; at < tables.size(); ++at)
            for (const auto& [cv, curve] : tables[at].curves)
                points_[at][cv] = pointsOf(tables[at], cv, curve);
    }

    void run()
    {
        std::vector<bool> isOff; // not isOff_: at first, each table is compared with all others
        for (std::size_t at = 0; at < tables_.size(); ++at)
            isOff.push_back(compareTable(at));
        isOff_ = isOff;
        for (std::size_t at = 0; at < tables_.size(); ++at)
            if (!isOff_[at]) {
                compareParts(at);
                checkEquation(at);
            }
        compareCvs();
    }

private:
    void report(const Rule& rule, std::size_t at, std::size_t line, const std::string& found,
                const std::string& expected)
    {
        findings_.report(rule, tables_[at].read->source, line, found, expected);
    }

    std::string rowText(std::size_t at, const Deviation& one) const
    {
        return cvText(one.cv) + ", flow " + numeral(one.point->row->flow) + " at Pressure " +
               numeral(one.point->row->pressure) + ' ' + std::string(tables_[at].spec.pressUnits);
    }

    static std::string expectedFlow(const Deviation& one)
    {
        return "about " + roughly(one.point->row->flow / std::exp(one.value));
    }

    /// The middle one of all tables is taken as right. Of two tables that differ, the later one is
    /// reported.
    Deviations deviationsOf(std::size_t at) const
    {
        Deviations deviations;
        for (const auto& [cv, points] : points_[at])
            for (const Point& point : points) {
                std::vector<double> shares{point.share};
                double rounding = 0;
                bool isFirst = true;
                for (std::size_t other = 0; other < tables_.size(); ++other)
                    if (const auto same = points_[other].find(cv);
                        other != at && same != points_[other].end() && !isOff_[other])
                        if (const auto share = shareAt(same->second, point.pascal)) {
                            isFirst &= other > at;
                            rounding = std::max(rounding, share->rounding);
                            shares.push_back(share->value);
                        }
                if (shares.size() < 3 && isFirst)
                    continue;
                const double expected = shares.size() < 3 ? shares.back() : median(shares);
                deviations.push_back({cv, &point, point.share - expected, rounding + point.rounding});
            }
        return deviations;
    }

    /// The likely cause of a factor. The flows of a single Cv may be those of another Cv.
    std::string causeText(std::size_t at, std::optional<float> cv, double value, double tolerance) const
    {
        std::string cause = likelyCause(tables_[at].spec, std::exp(value), tolerance);
        double nearest = 0.12;
        if (cv && std::abs(value) > std::log(1.15))
            for (const auto& [other, points] : points_[at])
                if (const double away = std::abs(value - std::log(other / *cv)); other != *cv && away < nearest) {
                    nearest = away;
                    cause = "the flows of " + cvText(other) + ", a column off?";
                }
        return cause.empty() ? "" : " (" + cause + ')';
    }

    std::map<float, Deviations> byCvOf(const Deviations& deviations) const
    {
        std::map<float, Deviations> byCv;
        for (const Deviation& one : deviations)
            byCv[one.cv].push_back(one);
        return byCv;
    }

    /// Reports a table that is wrong as a whole, by one factor or by a factor for each Cv. Gives
    /// whether it is.
    bool compareTable(std::size_t at)
    {
        const Deviations deviations = deviationsOf(at);
        const std::map<float, Deviations> byCv = byCvOf(deviations);
        std::vector<Middle> all;
        std::map<float, Middle> off;
        for (const auto& [cv, ofCv] : byCv) {
            all.push_back(middleOf(ofCv));
            if (all.back().isOff(cvRounding))
                off.emplace(cv, all.back());
        }
        if (!all.empty() && middleOf(deviations).isOff(tableRounding) && haveOneFactor(all)) {
            reportOff(at, deviations, std::nullopt);
            return true;
        }
        if (off.empty() || 10 * off.size() < 7 * byCv.size())
            return false;
        for (const auto& [cv, middle] : off)
            reportOff(at, byCv.at(cv), cv);
        return true;
    }

    static bool haveOneFactor(const std::vector<Middle>& middles)
    {
        const auto [least, most] = std::ranges::minmax_element(middles, {}, &Middle::value);
        return most->value - least->value < ownShare + cvRounding * (least->rounding + most->rounding);
    }

    /// Compares single Cvs, then pressures, then rows. Each step looks only at what the step before
    /// does not explain.
    void compareParts(std::size_t at)
    {
        Deviations deviations = deviationsOf(at);
        for (const auto& [cv, ofCv] : byCvOf(deviations)) {
            const Middle middle = middleOf(ofCv);
            if (!middle.isOff(cvRounding))
                continue;
            reportOff(at, ofCv, cv);
            for (Deviation& one : deviations)
                one.value -= one.cv == cv ? middle.value : 0;
        }
        comparePressures(at, deviations);
        compareRows(at, deviations);
    }

    static constexpr Rule flowsDiffer{Severity::warning, "flows differ from the other tables of the valve type",
                                      lookAtUnits};
    static constexpr Rule flowsDifferMuch{Severity::error, "flows are wrong by a factor", lookAtUnits};

    void reportOff(std::size_t at, const Deviations& deviations, std::optional<float> cv)
    {
        const Middle middle = middleOf(deviations);
        const Deviation& example = *std::ranges::min_element(
            deviations, {}, [&](const Deviation& one) { return std::abs(one.value - middle.value); });
        report(std::abs(middle.value) > mostOverEquation ? flowsDifferMuch : flowsDiffer, at, example.point->row->line,
               (cv ? cvText(*cv) + " passes " : "all CVs pass ") + factorText(middle.value) +
                   " what the others have, such as " + rowText(at, example),
               expectedFlow(example) + causeText(at, cv, middle.value, 0.01 + middle.rounding));
    }

    /// Reports pressures at which most Cvs are off. Neighbouring pressures are one finding.
    void comparePressures(std::size_t at, Deviations& deviations)
    {
        std::map<double, Deviations> byPressure;
        for (const Deviation& one : deviations)
            byPressure[one.point->row->pressure].push_back(one);
        Deviations run;
        for (const auto& [pressure, ofPressure] : byPressure) {
            const Middle middle = middleOf(ofPressure);
            if (ofPressure.size() < 3 || !middle.isOff(cvRounding)) {
                reportPressures(at, run);
                run.clear();
                continue;
            }
            run.insert(run.end(), ofPressure.begin(), ofPressure.end());
            for (Deviation& one : deviations)
                if (one.point->row->pressure == pressure)
                    one.value -= middle.value;
        }
        reportPressures(at, run);
    }

    static constexpr Rule pressureStandsOut{Severity::warning, "flows do not fit the pressure",
                                            "look for a wrong pressure or shifted rows"};

    void reportPressures(std::size_t at, const Deviations& run)
    {
        if (run.empty())
            return;
        const double first = run.front().point->row->pressure;
        const double last = run.back().point->row->pressure;
        report(pressureStandsOut, at, run.front().point->row->line,
               (first == last ? "" : "from Pressure " + numeral(first) + " to " + numeral(last) + ' ') +
                   "most CVs pass " + factorText(middleOf(run).value) + " what the others have, such as " +
                   rowText(at, run.front()),
               expectedFlow(run.front()));
    }

    static constexpr Rule rowsStandOut{Severity::warning, "flows of single rows differ from the other tables",
                                       "look for slips and shifted rows"};
    static constexpr Rule rowsStandOutMuch{Severity::error, "flows of single rows are wrong by a factor",
                                           "look for slips and shifted rows"};

    /// Reports single rows that are off, one finding for each Cv.
    void compareRows(std::size_t at, const Deviations& deviations)
    {
        std::map<float, std::pair<std::size_t, const Deviation*>> worst;
        for (const Deviation& one : deviations)
            if (std::abs(one.value) > rowShare + one.rounding) {
                auto& [count, which] = worst[one.cv];
                ++count;
                if (which == nullptr || std::abs(one.value) > std::abs(which->value))
                    which = &one;
            }
        for (const auto& [cv, found] : worst) {
            const auto& [count, which] = found;
            report(std::abs(which->value) > mostOfRow ? rowsStandOutMuch : rowsStandOut, at, which->point->row->line,
                   std::to_string(count) + (count == 1 ? " row, " : " rows, the worst ") + factorText(which->value) +
                       ": " + rowText(at, *which),
                   expectedFlow(*which) + causeText(at, cv, which->value, 0.02));
        }
    }

    static constexpr Rule flowsBeyondCv{Severity::error, "flows that no valve of the CV passes", lookAtUnits};
    static constexpr Rule flowsAboveCv{Severity::warning, "flows are more than the CVs pass", lookAtUnits};

    /// A factor that all tables share can be seen only against the flow equation. It is seen best
    /// at low pressures, where xT has little effect.
    void checkEquation(std::size_t at)
    {
        Deviations all;
        Deviations low;
        for (const auto& [cv, points] : points_[at])
            for (const Point& point : points) {
                all.push_back({cv, &point, point.share, point.rounding});
                if (point.pascal < lowPressure)
                    low.push_back(all.back());
            }
        if (const double middle = all.empty() ? 0 : middleOf(all).value;
            middle > mostOverEquation || middle < leastOfEquation)
            reportEquation(flowsBeyondCv, at, all, "0.34 to 1.22");
        else if (low.size() > 5 && middleOf(low).value > mostAtLowPressure)
            reportEquation(flowsAboveCv, at, low, "0.34 to 1.1");
    }

    void reportEquation(const Rule& rule, std::size_t at, const Deviations& shares, const std::string& expected)
    {
        const double middle = middleOf(shares).value;
        const Deviation& example =
            *std::ranges::min_element(shares, {}, [&](const Deviation& one) { return std::abs(one.value - middle); });
        report(rule, at, example.point->row->line,
               factorText(middle) + " what the flow equation gives, such as " + rowText(at, example),
               expected + " times " + roughly(example.point->row->flow / std::exp(example.value)) +
                   causeText(at, std::nullopt, middle, 0.25));
    }

    static constexpr Rule cvStandsOut{Severity::warning, "flows do not fit the CV",
                                      "look whether columns or rows are shifted"};

    /// Reports a Cv that passes much more or less for its size than the others do, in all tables.
    void compareCvs()
    {
        std::map<float, double> shares; // of the middle shares of all tables, the middle one
        for (const auto& [cv, first] : points_[0]) {
            std::vector<double> ofTables;
            for (const auto& byCv : points_)
                if (const auto points = byCv.find(cv); points != byCv.end() && !points->second.empty()) {
                    std::vector<double> ofRows;
                    for (const Point& point : points->second)
                        ofRows.push_back(point.share);
                    ofTables.push_back(median(ofRows));
                }
            if (!first.empty())
                shares[cv] = median(ofTables);
        }
        std::vector<double> values;
        for (const auto& [cv, share] : shares)
            values.push_back(share);
        if (values.size() < 3) // too few to compare with
            return;
        const double middle = median(values);
        for (const auto& [cv, share] : shares)
            if (std::abs(share - middle) > mostBetweenCvs) {
                const CapacityRow& row = *points_[0].at(cv).front().row;
                report(cvStandsOut, 0, row.line,
                       cvText(cv) + " passes " + factorText(share - middle) +
                           " what its CV gives beside the others, in all tables",
                       "about " + roughly(row.flow / std::exp(share - middle)) + " in place of " + numeral(row.flow));
            }
    }

    const std::vector<ValveTable>& tables_;
    std::vector<std::map<float, Points>> points_; ///< of each table, by Cv
    std::vector<bool> isOff_;                     ///< wrong as a whole; nothing is compared with these
    Findings& findings_;
};

} // namespace

void compareFlows(const std::vector<ValveTable>& tables, Findings& findings)
{
    FlowComparison(tables, findings).run();
}

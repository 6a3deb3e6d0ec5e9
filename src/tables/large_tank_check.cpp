#include "tables/findings.h"
#include "tables/flow_units.h"
#include "tables/table_checks.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace
{

using Volumes = std::map<double, const LargeTankRow*>; // the rows by volume

constexpr auto tankFlows = std::span(largeTankColumns).subspan<1>();

double LargeTankRow::*flowOf(const Column<LargeTankRow>& column)
{
    return std::get<double LargeTankRow::*>(column.member);
}

double factorBetween(double one, double other)
{
    return std::max(one / other, other / one);
}

std::string at(const LargeTankRow& row, const Column<LargeTankRow>& column)
{
    return std::string(column.name) + ' ' + numeral(row.*flowOf(column)) + " at TankVol " + numeral(row.tankVol);
}

constexpr Rule flowIsZero{Severity::error, "a flow of 0", "correct it"};
constexpr Rule volumesDescend{Severity::error, "the volumes do not ascend", "sort the rows, or correct the volume"};
constexpr Rule flowFalls{Severity::error, "a flow falls as the volume rises", "correct the figure that is wrong"};
constexpr Rule flowGrowsOddly{Severity::warning, "a flow grows too little or too much with the volume",
                              "look for a slip in flow or volume"};
constexpr Rule highPointBreathesMore{Severity::error, "DepadHFP is above Pad or DepadLFP",
                                     "look whether columns are swapped"};

/// Checks each row of a large-tank table, and its growth from the row before.
void checkRows(const Table<LargeTankRow>& read, Findings& findings)
{
    Rounding rounding;
    for (const LargeTankRow& row : read.rows)
        for (const Column<LargeTankRow>& column : tankFlows)
            rounding.add(row.*flowOf(column));
    const auto report = [&](const Rule& rule, const LargeTankRow& row, const std::string& found,
                            const std::string& expected) {
        findings.report(rule, read.source, row.line, found, expected);
    };
    const LargeTankRow* before = nullptr;
    for (const LargeTankRow& row : read.rows) {
        if (before != nullptr && row.tankVol <= before->tankVol)
            report(volumesDescend, row, "TankVol " + numeral(row.tankVol) + lineText(before->line),
                   "more than " + numeral(before->tankVol));
        for (const Column<LargeTankRow>& column : tankFlows) {
            const double flow = row.*flowOf(column);
            if (flow <= 0)
                report(flowIsZero, row, std::string(column.name) + ' ' + numeral(flow), "more than 0");
            if (before == nullptr || row.tankVol <= before->tankVol)
                continue;
            const double from = before->*flowOf(column);
            const double ratio = before->tankVol > 0 ? row.tankVol / before->tankVol : 1;
            const double digit = rounding.unit(flow);
            const double least = from * std::pow(ratio, 0.25);
            const double most = 1.02 * from * std::pow(ratio, 1.5) + digit;
            if (flow < from || ((1.02 * flow + digit < least || flow > most) && before->tankVol > 0))
                report(flow < from ? flowFalls : flowGrowsOddly, row,
                       at(row, column) + ", after " + numeral(from) + lineText(before->line),
                       roughly(least) + " to " + roughly(most));
        }
        if (row.depadHfp > row.pad || row.depadHfp > row.depadLfp)
            report(highPointBreathesMore, row,
                   "DepadHFP " + numeral(row.depadHfp) + " beside Pad " + numeral(row.pad) + " and DepadLFP " +
                       numeral(row.depadLfp),
                   "at most " + numeral(std::min(row.pad, row.depadLfp)));
        before = &row;
    }
}

constexpr Rule volumesNotCovered{Severity::error, "tanks are missing that are looked up in the table", "add rows"};
constexpr Rule otherThanFormulaMuch{
    Severity::error, "the table does not go on where the formula for smaller tanks ends", "look at the unit"};
constexpr Rule otherThanFormula{Severity::warning, "the table does not go on where the formula for smaller tanks ends",
                                "look at the unit; a table of a later edition of API 2000 begins higher or lower"};

// In later editions of API 2000, in-breathing is up to 3.4 times that of the formula. A wrong unit
// gives 7.5 times (gallons for cubic feet) or more.
constexpr double mostOfFormula = 5;

/// Checks where a large-tank table begins and ends.
void checkEnds(const LargeTankTableSpec& table, const Table<LargeTankRow>& read, const Volumes& rows,
               Findings& findings)
{
    const std::string units = ' ' + std::string(table.volUnits);
    const auto [first, last] = std::pair(rows.begin()->second, rows.rbegin()->second);
    if (first->tankVol > table.lowest)
        findings.report(volumesNotCovered, read.source, first->line, "TankVol starts at " + numeral(first->tankVol),
                        "at most " + numeral(table.lowest) + units);
    if (last->tankVol < table.highest)
        findings.report(volumesNotCovered, read.source, last->line, "TankVol ends at " + numeral(last->tankVol),
                        "at least " + numeral(table.highest) + units);
    for (const Column<LargeTankRow>& column : tankFlows) {
        const auto flow = valueAt(rows, table.lowest, flowOf(column));
        const double formula =
            table.lowest * (flowOf(column) == &LargeTankRow::depadHfp ? table.thermalHigh : table.thermal);
        const double factor = flow ? factorBetween(*flow, formula) : 1;
        if (factor > 1.1)
            findings.report(factor > mostOfFormula ? otherThanFormulaMuch : otherThanFormula, read.source,
                            rows.lower_bound(table.lowest)->second->line,
                            std::string(column.name) + ' ' + roughly(*flow) + " at TankVol " + numeral(table.lowest) +
                                units,
                            "about " + roughly(formula) + " by the formula");
    }
}

/// A large-tank table that was checked.
struct CheckedTanks
{
    LargeTankTableSpec table;
    Volumes rows;
    std::string source;
};

constexpr Rule tablesDifferMuch{Severity::error, "the large-tank tables differ by more than a factor of 2",
                                "look at the units; take both of one edition of API 2000"};
constexpr Rule tablesDiffer{Severity::warning, "the large-tank tables differ by more than 10 %",
                            "look for a slip or a row that is missing"};

/// Compares the rows of one large-tank table with what the other table gives for the same volumes.
void compareTables(const CheckedTanks& checked, const CheckedTanks& other, Findings& findings)
{
    const double volumeUnit = gallonsPer(checked.table.unitSystem) / gallonsPer(other.table.unitSystem);
    const double flowUnit = scfhPer(checked.table.unitSystem) / scfhPer(other.table.unitSystem);
    for (const auto& [volume, row] : checked.rows)
        for (const Column<LargeTankRow>& column : tankFlows) {
            const auto expected = valueAt(other.rows, volume * volumeUnit, flowOf(column));
            const double factor = expected ? factorBetween(row->*flowOf(column) * flowUnit, *expected) : 1;
            if (factor > 1.1)
                findings.report(factor > 2 ? tablesDifferMuch : tablesDiffer, checked.source, row->line,
                                at(*row, column),
                                "about " + roughly(*expected / flowUnit) + " as in " + std::string(other.table.name));
        }
}

} // namespace

void checkLargeTankTables(const CapacityTables& tables, Findings& findings)
{
    std::vector<CheckedTanks> checked;
    for (const LargeTankTableSpec& table : largeTankTableSpecs) {
        const Table<LargeTankRow>& read = tables.largeTanks.at(std::string(table.name));
        checkRows(read, findings);
        Volumes rows;
        for (const LargeTankRow& row : read.rows)
            rows.emplace(row.tankVol, &row);
        if (!read.isReadable || rows.empty())
            continue;
        checkEnds(table, read, rows, findings);
        checked.push_back({table, std::move(rows), read.source});
    }
    if (checked.size() == largeTankTableSpecs.size()) {
        compareTables(checked[1], checked[0], findings);
        compareTables(checked[0], checked[1], findings);
    }
}

#include "tables/table_checks.h"

#include "tables/findings.h"
#include "tables/flow_units.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace
{

constexpr Rule noCommonPressures{Severity::error, "no pressures in common with another table", "look at the unit"};

/// The lowest and the highest pressure of a table.
std::pair<double, double> endsOf(const ValveTable& table)
{
    std::pair<double, double> ends{std::numeric_limits<double>::max(), 0};
    for (const auto& [cv, curve] : table.curves)
        ends = {std::min(ends.first, curve.begin()->first), std::max(ends.second, curve.rbegin()->first)};
    return ends;
}

/// Tables of one valve type that have no pressures in common cannot be compared.
void checkPressuresMeet(const ValveTable& table, const ValveTable& first, Findings& findings)
{
    const double unit = pascalPer(table.spec.pressUnits) / pascalPer(first.spec.pressUnits);
    const auto [firstLowest, firstHighest] = endsOf(first);
    const auto [lowest, highest] = endsOf(table);
    if (lowest * unit > firstHighest || highest * unit < firstLowest)
        findings.report(noCommonPressures, table.read->source, 0,
                        "Pressure goes from " + numeral(lowest) + " to " + numeral(highest) + ' ' +
                            std::string(table.spec.pressUnits),
                        "some from " + roughly(firstLowest / unit) + " to " + roughly(firstHighest / unit) + " as in " +
                            std::string(first.spec.name));
}

} // namespace

void checkTables(const CapacityTables& tables, Findings& findings)
{
    std::map<std::string_view, std::vector<ValveTable>> types;
    for (const ValveTableSpec& spec : valveTableSpecs()) {
        ValveTable table = checkValveTable(spec, tables.valves.at(std::string(spec.name)), findings);
        if (table.isUsable)
            types[spec.valveType].push_back(std::move(table));
    }
    for (const auto& [type, ofType] : types) {
        for (const ValveTable& table : ofType)
            checkPressuresMeet(table, ofType.front(), findings);
        compareFlows(ofType, findings);
        checkBodySizes(ofType, findings);
    }
    checkLargeTankTables(tables, findings);
}

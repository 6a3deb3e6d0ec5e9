#include "table_checks.h"

#include <string_view>

void checkTables(const CapacityTables& tables, Findings& findings)
{
    std::map<std::string_view, std::vector<ValveTable>> types;
    for (const ValveTableSpec& spec : valveTableSpecs()) {
        ValveTable table = checkValveTable(spec, tables.valves.at(std::string(spec.name)), findings);
        if (table.isWhole)
            types[spec.valveType].push_back(std::move(table));
    }
    for (const auto& [type, ofType] : types) {
        compareFlows(ofType, findings);
        checkBodySizes(ofType, findings);
    }
    checkLargeTankTables(tables, findings);
}

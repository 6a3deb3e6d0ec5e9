#pragma once

#include "tables/capacity_tables.h"
#include "tables/valve_curves.h"

class Findings;

/// A valve table with its rows by Cv and pressure.
struct ValveTable
{
    ValveTableSpec spec;
    const Table<CapacityRow>* read;
    Curves curves;
    Rounding rounding;
    bool isUsable = false; ///< it is readable and has rows that the program finds
};

/// Checks that the program's lookups work on the figures of all tables, and that capacities can
/// have such figures. `tables` has an entry for every table of the program. Of a table that is not
/// usable, only single rows are checked.
void checkTables(const CapacityTables& tables, Findings& findings);

/// Checks one valve table by itself.
ValveTable checkValveTable(const ValveTableSpec& spec, const Table<CapacityRow>& read, Findings& findings);

/// Compares the tables of one valve type with each other and with the flow equation.
void compareFlows(const std::vector<ValveTable>& tables, Findings& findings);

/// Checks the body sizes of one valve type in all its tables.
void checkBodySizes(const std::vector<ValveTable>& tables, Findings& findings);

void checkLargeTankTables(const CapacityTables& tables, Findings& findings);

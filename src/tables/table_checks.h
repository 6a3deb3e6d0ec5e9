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
    bool isWhole = false; ///< it could be read whole, and has rows that the program finds
};

/// Holds the figures of all tables to what the program's lookups need and to what capacities can be, from the figures
/// alone. `tables` has an entry for every table of the program; one that could not be read whole is held to what its
/// single rows tell.
void checkTables(const CapacityTables& tables, Findings& findings);

/// Holds one valve table to what can be told without the others.
ValveTable checkValveTable(const ValveTableSpec& spec, const Table<CapacityRow>& read, Findings& findings);

/// Compares the tables of one valve type with each other and with the flow equation.
void compareFlows(const std::vector<ValveTable>& tables, Findings& findings);

/// Looks at the body sizes of one valve type, over all its tables.
void checkBodySizes(const std::vector<ValveTable>& tables, Findings& findings);

void checkLargeTankTables(const CapacityTables& tables, Findings& findings);

#pragma once

#include "capacity_tables.h"

class Findings;

/// Fills the rows that a Cv lacks at pressures of other Cvs, on the straight line between its own rows, as the program
/// itself does between rows; never beyond them. Says how many each Cv has got. A table that would become too large is
/// reported and no longer whole. `tables` has an entry for every table of
/// the program; one that could not be read whole is left as it is.
void completeTables(CapacityTables& tables, Findings& findings);

/// Holds the figures of all tables to what the program's lookups need and to what capacities can be, from the figures
/// alone. `tables` has an entry for every table of the program; one that could not be read whole is held to what its
/// single rows tell.
void checkTables(const CapacityTables& tables, Findings& findings);

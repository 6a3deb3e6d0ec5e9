#pragma once

#include "tables/capacity_tables.h"

class Findings;

/// Adds pressures between those of a valve table, as close as the one step of the Cv needs them.
/// Adds the rows that a Cv lacks at pressures of the table. All of them lie on the straight line
/// between the Cv's own rows, as in the program itself, and never beyond these. Reports how many
/// were added. A table that would become too large is reported and marked as not readable. `tables` has
/// an entry for every table of the program; a table that is not readable stays as it is.
void completeTables(CapacityTables& tables, Findings& findings);

#pragma once

#include "tables/capacity_tables.h"

class Findings;

/// Lays pressures between those of a valve table, as close as the one step of the Cv needs them, and fills the rows
/// that a Cv lacks at pressures of the table; both on the straight line between its own rows, as the program itself
/// does, never beyond them. Says how many. A table that would become too large is reported and no longer whole.
/// `tables` has an entry for every table of the program; one that could not be read whole is left as it is.
void completeTables(CapacityTables& tables, Findings& findings);

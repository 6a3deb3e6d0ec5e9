#pragma once

#include "tables/capacity_tables.h"

/// What the columns of a table are measured in.
struct TableUnits
{
    std::string_view first; ///< of `Pressure` or `TankVol`
    std::string_view flow;
    bool isNitrogen; ///< in place of air, where a mass is given
};

/// Reads the CSV file of one table. What can be read in two ways is reported, and read in the
/// likelier way: so one run finds all other faults, too. The errors keep the table from being used.
template <typename Row>
Table<Row> readTable(const std::filesystem::path& path, const TableUnits& units, Findings& findings);

#pragma once

#include "tables/capacity_tables.h"

#include <filesystem>
#include <string>

class Findings;

/// The bytes of a data file with `tables`; the same for the same tables. Throws std::runtime_error when there is no
/// memory for it.
std::string databaseBytes(const CapacityTables& tables);

/// Reads the tables of a data file, whoever made it, as the program finds them: the file itself, names, columns,
/// indexes and types of the values are checked on the way. Rows are counted from 1 in the order they are stored in.
CapacityTables readDatabase(const std::filesystem::path& file, Findings& findings);

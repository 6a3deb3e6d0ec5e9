#pragma once

#include "tables/capacity_tables.h"

#include <filesystem>
#include <string>

class Findings;

/// The bytes of a data file with `tables`. The same tables give the same bytes. Throws
/// std::runtime_error when there is not enough memory.
std::string databaseBytes(const CapacityTables& tables);

/// Reads the tables of a data file, whoever made it, in the way the program does. It also checks
/// the file itself, the names, columns and indexes of its tables, and the types of the values. Rows
/// are counted from 1, as they are stored.
CapacityTables readDatabase(const std::filesystem::path& file, Findings& findings);

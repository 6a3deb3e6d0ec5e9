#pragma once

#include "capacity_tables.h"

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

/// Writes the data file with `tables` and puts it in the place of `file` in one step. Throws std::runtime_error with
/// the reason when it cannot; `file` is then as it was and nothing is left beside it.
void replaceDatabase(const CapacityTables& tables, const std::filesystem::path& file);

/// The whole command, `arguments` without the program name. Findings and a closing line go to `messages`. Gives the
/// exit status: 0 built, 1 refused or not written, 2 wrong arguments.
int buildCapacities(const std::vector<std::string>& arguments, std::ostream& messages);

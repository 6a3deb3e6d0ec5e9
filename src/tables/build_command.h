#pragma once

#include <iosfwd>
#include <string>
#include <vector>

// How the maker's tables become a data file. Start reading here.
//
// 1. `buildCapacities` (below) reads the arguments. Each command ends with the findings that it has counted
//    (tables/findings).
// 2. `readCapacityTables` (tables/capacity_tables) reads a CSV file for each table that base/offered.h names
//    (tables/table_reader): its bytes as UTF-8 (tables/table_text), its title, header and units (tables/table_layout),
//    and the way in which its numbers are written (tables/number_style).
// 3. With `--complete`, `completeTables` (tables/complete_tables) fills rows and pressures that a table lacks.
// 4. `checkTables` (tables/table_checks) checks each valve table by itself (tables/valve_table_check), the body sizes
// of
//    a valve type (tables/body_size_check), the tables of a type against each other and against the flow equation
//    (tables/flow_comparison, with flow_shares and flow_units), and the large tanks (tables/large_tank_check).
// 5. `databaseBytes` (tables/capacity_database) makes the bytes of the data file with their checksum
//    (capacity/file_check), and files/replacement_file puts them in place.
//
// `--check` and `--export` begin with `readDatabase` (tables/capacity_database), which reads a data file with the
// lookups of the program itself (capacity/capacity_store).

/// The whole command `build_capacities`; `arguments` are without the program's name. Help and
/// version go to `out`, findings and a closing line to `messages`. Gives the exit status: 0 done; 1
/// refused or not written; 2 wrong arguments.
int buildCapacities(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& messages);

#pragma once

#include <optional>
#include <string>

class CapacityStore;

/// What a data file's tables are, in the words of who built it, such as "nominal, computed".
struct TablesLabel
{
    std::string label;
    std::string date; ///< of the build, YYYY-MM-DD
};

/// "nominal, computed (2026-11-23)".
inline std::string describe(const TablesLabel& tables)
{
    return tables.label + " (" + tables.date + ')';
}

/// The label in the table `Label` of the data file that the store has read last: that of the sizing under way. A file
/// without a label, or one that cannot be read, has none.
std::optional<TablesLabel> tablesLabel(CapacityStore& store);

/// The checksum of all tables in that file, which it was checked against when it was read; "" when it has none.
std::string tablesChecksum(CapacityStore& store);

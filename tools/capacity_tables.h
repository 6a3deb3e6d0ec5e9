#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// Capacity of one valve at one pressure, in the units of its table.
struct CapacityRow
{
    std::size_t line = 0; ///< where it stands in the CSV file
    double pressure = 0;
    double flow = 0;
    std::string bodySize;
    double cv = 0;
};

/// Thermal venting flows of one large tank.
struct LargeTankRow
{
    std::size_t line = 0; ///< where it stands in the CSV file
    double tankVol = 0;
    double pad = 0;
    double depadHfp = 0; ///< high flash point
    double depadLfp = 0; ///< low flash point
};

/// A column of a table, as the CSV header and the data file name it.
template <typename Row>
struct Column
{
    const char* name;
    std::variant<double Row::*, std::string Row::*> member;
};

inline constexpr std::array<Column<CapacityRow>, 4> capacityColumns{{
    {"Pressure", &CapacityRow::pressure},
    {"flow", &CapacityRow::flow},
    {"Bodysize", &CapacityRow::bodySize},
    {"CV", &CapacityRow::cv},
}};

inline constexpr std::array<Column<LargeTankRow>, 4> largeTankColumns{{
    {"TankVol", &LargeTankRow::tankVol},
    {"Pad", &LargeTankRow::pad},
    {"DepadHFP", &LargeTankRow::depadHfp},
    {"DepadLFP", &LargeTankRow::depadLfp},
}};

/// All tables by name, their rows in the order of the files.
struct CapacityTables
{
    std::map<std::string, std::vector<CapacityRow>> valves;
    std::map<std::string, std::vector<LargeTankRow>> largeTanks;
};

/// Writes findings as they come, one a line ("psi_Pad.csv:17: error: ..."), and counts them.
class Findings
{
public:
    explicit Findings(std::ostream& messages) : out(messages) {}

    /// What would make a lookup wrong. `line` 0: the file as a whole.
    void error(std::string_view file, std::size_t line, std::string_view reason);

    /// What is only suspicious. `line` as above.
    void warning(std::string_view file, std::size_t line, std::string_view reason);

    int errors() const { return errorCount; }
    int warnings() const { return warningCount; }

private:
    void write(std::string_view file, std::size_t line, std::string_view kind, std::string_view reason);

    std::ostream& out;
    int errorCount = 0;
    int warningCount = 0;
};

/// Reads and checks the CSV file of every table in `directory`. With errors among the findings, the tables hold only
/// the rows that could be read and are not fit for use.
CapacityTables readCapacityTables(const std::filesystem::path& directory, Findings& findings);

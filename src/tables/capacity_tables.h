#pragma once

#include "capacity/tables_label.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

class Findings;
struct Rule;

/// What the program reads in a tenth of a second; thirty times the rows of the shipped tables.
inline constexpr std::size_t mostRows = 20'000;
inline constexpr const char* atMostRows = "at most 20000 rows";
extern const Rule tooManyRows;

/// Capacity of one valve at one pressure, in the units of its table.
struct CapacityRow
{
    std::size_t line = 0; ///< where it stands in its file; 0: it was filled
    double pressure = 0;
    double flow = 0;
    std::string bodySize;
    double cv = 0;
};

/// Thermal venting flows of one large tank: volume in gallons and flows in SCFH, or m3 and Nm3/h.
struct LargeTankRow
{
    std::size_t line = 0; ///< where it stands in its file
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

/// The columns of a kind of row.
template <typename Row>
constexpr std::span<const Column<Row>> columnsOf()
{
    if constexpr (std::is_same_v<Row, CapacityRow>)
        return capacityColumns;
    else
        return largeTankColumns;
}

/// A table as it was read.
template <typename Row>
struct Table
{
    std::string source;    ///< what its findings name: "psi_Pad.csv", or "psi_Pad" in a data file
    std::vector<Row> rows; ///< in the order they were read in
    bool isWhole = false;  ///< enough could be read to check it as a table: at most a tenth of its rows is left out
};

/// All tables by name, and what they are, where that is said.
struct CapacityTables
{
    std::map<std::string, Table<CapacityRow>> valves;
    std::map<std::string, Table<LargeTankRow>> largeTanks;
    std::optional<TablesLabel> label;
};

/// A valve table of the program and what it is used for.
struct ValveTableSpec
{
    std::string_view name;
    std::string_view valveType;
    std::string_view unitSystem;
    std::string_view pressUnits;
    std::span<const float> cvSeries;
    double lowest; ///< pressure that any model lets a user enter, in `pressUnits`
    double highest;
};

/// The valve tables in the order of `offers`. The others of a valve type are compared with its first.
std::vector<ValveTableSpec> valveTableSpecs();

/// A large-tank table and the volumes, in `volUnits`, that are looked up in it rather than computed.
struct LargeTankTableSpec
{
    std::string_view name;
    std::string_view unitSystem;
    const char* volUnits;
    double lowest; ///< the small tanks end here
    double highest;
    double thermal;     ///< flow per volume of small tanks, in the units of the table: in `Pad` and `DepadLFP`
    double thermalHigh; ///< in `DepadHFP`
};

extern const std::array<LargeTankTableSpec, 2> largeTankTableSpecs;

/// Shortest text that reads back as `value`, without an exponent.
std::string numberText(double value);

extern const Rule isNoNumber;
inline constexpr const char* digitsOnly = "a number in digits, not negative"; ///< what its findings expect

/// What keeps a text from being plain: "is empty" (or blank), "has a control character", "is not UTF-8"; nullptr for a
/// plain one.
const char* textFault(std::string_view text);

/// Whether a value is one that a table may hold; else it is reported and stands for nothing. Numbers are finite and not
/// negative; a text is plain.
bool checkValue(double value, const char* column, std::string_view file, std::size_t line, Findings& findings);
bool checkValue(const std::string& value, const char* column, std::string_view file, std::size_t line,
                Findings& findings);

/// Reads the CSV file of every table in `directory`.
CapacityTables readCapacityTables(const std::filesystem::path& directory, Findings& findings);

/// The CSV text of a table: with commas and decimal points, or as spreadsheets with a decimal comma read it, with
/// semicolons and a byte-order mark.
template <typename Row>
std::string csvText(const Table<Row>& table, bool decimalComma = false);

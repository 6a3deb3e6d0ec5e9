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

/// The program reads so many in a tenth of a second. It is thirty times the rows of a shipped
/// table.
inline constexpr std::size_t mostRows = 20'000;
inline constexpr const char* atMostRows = "at most 20000 rows";
extern const Rule tooManyRows;

/// Capacity of one valve at one pressure, in the units of its table.
struct CapacityRow
{
    std::size_t line = 0; ///< of the file; 0: the row was added by `--complete`
    double pressure = 0;
    double flow = 0;
    std::string bodySize;
    double cv = 0;
};

/// Thermal venting flows of one large tank: volume in gallons and flows in SCFH, or m3 and Nm3/h.
struct LargeTankRow
{
    std::size_t line = 0; ///< of the file
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
    std::string source;      ///< what its findings name: "psi_Pad.csv", or "psi_Pad" in a data file
    std::vector<Row> rows;   ///< in the order they were read in
    bool isReadable = false; ///< at most a tenth of its rows could not be read
};

/// All tables by name, and their label if they have one.
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
    double lowest; ///< of the pressures that some model lets a user enter, in `pressUnits`
    double highest;
};

/// The valve tables in the order of `offers`. The others of a valve type are compared with its
/// first.
std::vector<ValveTableSpec> valveTableSpecs();

/// A large-tank table, and the volumes that are looked up in it instead of computed, in `volUnits`.
struct LargeTankTableSpec
{
    std::string_view name;
    std::string_view unitSystem;
    const char* volUnits;
    double lowest; ///< where the small tanks end
    double highest;
    double thermal;     ///< flow per volume of small tanks, for `Pad` and `DepadLFP`
    double thermalHigh; ///< the same for `DepadHFP`
};

extern const std::array<LargeTankTableSpec, 2> largeTankTableSpecs;

/// The shortest text that reads back as `value`, without an exponent.
std::string numberText(double value);

extern const Rule isNoNumber;
inline constexpr const char* digitsOnly = "a number in digits, not negative"; ///< is expected

/// Why a text cannot be shown: "is empty" (or blank), "has a control character", "is not UTF-8";
/// nullptr when it can.
const char* textFault(std::string_view text);

/// Whether a table may have this value: a finite number that is not negative, or a text without a
/// fault. Any other value is reported.
bool checkValue(double value, const char* column, std::string_view file, std::size_t line, Findings& findings);
bool checkValue(const std::string& value, const char* column, std::string_view file, std::size_t line,
                Findings& findings);

/// Reads the CSV file of every table in `directory`.
CapacityTables readCapacityTables(const std::filesystem::path& directory, Findings& findings);

/// The CSV text of a table: with commas and decimal points; or with decimal commas, semicolons and
/// a byte-order mark, as spreadsheets read it where numbers have a decimal comma.
template <typename Row>
std::string csvText(const Table<Row>& table, bool decimalComma = false);

#pragma once

#include "files/csv_reader.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a field of the header is found to be.
struct HeaderField
{
    std::string text;
    std::string unit;          ///< in brackets behind the name: "Pressure [psi]"
    std::size_t column = none; ///< which of the table's columns
    bool isExact = false;      ///< it has the column's exact name; else only a similar one
    std::optional<double> cv;  ///< "Cv 0.2 1/2"": a column of flows of its own
    std::string bodySize;      ///< of that
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    bool isNumber(std::span<const CsvColumn> columns) const
    {
        return cv || (column != none && columns[column].isNumber);
    }
};

/// How the rows of a table are laid out.
struct TableLayout
{
    std::size_t header = 0; ///< of the rows; those before it are titles
    std::vector<HeaderField> fields;
    bool hasUnitsRow = false; ///< behind the header
    bool isByCv = false;      ///< a column of flows for each Cv
};

/// Whether a field means "no figure": it is empty, "-" or "n/a".
bool isNothing(std::string_view text);

/// Finds the header among the first rows: the row that names most columns.
TableLayout findLayout(const std::vector<CsvRow>& rows, std::span<const CsvColumn> columns);

/// How many columns a row names. It decides which separator is the right one.
std::size_t namesIn(const CsvRow& row, std::span<const CsvColumn> columns);

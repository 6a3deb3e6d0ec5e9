#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// One row of a CSV text.
struct CsvRow
{
    std::size_t line = 0;            ///< the physical line it begins on, from 1
    std::vector<std::string> fields; ///< empty when the quoting is broken
};

/// The rows of an RFC 4180 text; lines end in LF, CRLF or CR, and a UTF-8 byte order mark is passed over. Blank lines
/// are left out. A row with broken quoting comes without fields, and reading goes on with the line after the one it
/// begins on.
std::vector<CsvRow> readCsv(std::string_view text);

#pragma once

#include "base/text.h"

#include <cstddef>
#include <deque>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// One row of a CSV text.
struct CsvRow
{
    std::size_t line = 0;            ///< the physical line it begins on, from 1
    std::vector<std::string> fields; ///< empty when the quoting is broken
    std::string broken;              ///< in this case, the line as it is
};

/// Why a CSV text as a whole cannot be read.
struct CsvProblem : std::runtime_error
{
    std::size_t line;
    CsvProblem(std::size_t where, const std::string& why) : std::runtime_error(why), line(where) {}
};

/// How a CSV text is written.
struct CsvFormat
{
    char separator = ',';
    char decimalMark = '.';
    bool byteOrderMark = false; ///< of UTF-8, at the beginning
    std::string lineEnd = "\n"; ///< of the first line
    std::size_t rows = 0;       ///< below the header
};

/// A column that a CSV text may have.
struct CsvColumn
{
    std::string_view name;
    bool isNumber;
};

/// What is known of a CSV text before it is read.
struct CsvKnown
{
    std::optional<char> separator;
    std::optional<char> decimalMark; ///< where no number of the text has one
};

/// What the name in a header says of its column.
enum class CsvKind
{
    unknown,
    text,
    number,
};

/// Finds how the rest of `in` is written: separated by commas, semicolons or tabs, and in the last two with a decimal
/// point or comma. The separator is the one that gives most known columns in the header. When no number has a decimal
/// mark, the mark is the one that spreadsheets use with this separator. Throws CsvProblem when the text cannot be read,
/// or can be read in two ways: another encoding or separator, both decimal marks, a mark that may separate thousands. A
/// text like "1.2.3", which no decimal mark makes a number, does not count here: its row is refused later. Reads to the
/// end.
CsvFormat findCsvFormat(std::istream& in, CsvKind (*kindOf)(std::string_view name), const CsvKnown& known = {});

/// The rows of an RFC 4180 text, one after the other. Lines end in LF, CRLF or CR; a UTF-8 byte order mark is ignored.
/// Line ends in a quoted field are kept as they are. Rows without any text (a blank line, ",,,") are left out. A row
/// with broken quoting is one line and comes without fields; the next line is read as a row of its own. One row is in
/// memory at a time.
class CsvReader
{
public:
    /// Reads from where `text` stands, which must outlive the reader.
    explicit CsvReader(std::istream& text, char separatedBy = ',') : in(text), separator(separatedBy) {}

    /// Whether there was another row. Throws CsvProblem at a line that is too long, is not in UTF-8 or cannot be read.
    bool next(CsvRow& row);

    /// Whether the last line that was read has a line end. A file that was cut often ends without one.
    bool lastLineHasEnd() const { return hasEnd; }

private:
    struct Line
    {
        std::string text;
        std::string end; ///< "" at the end of a text without one
    };

    int nextByte();
    bool readLine();
    bool hasLine(std::size_t at);
    std::size_t readRow(std::vector<std::string>& fields);

    std::istream& in;
    char separator;
    std::deque<Line> lines; ///< read, but not handed out
    std::size_t line = 0;   ///< the number of the first of them, less one
    bool atStart = true;
    bool hasEnd = true; ///< of the line read last
};

/// A field as CSV text writes it: quoted where it must be.
std::string csvField(std::string_view text, char separator);

/// A row of fields as CSV text writes it, without its line end.
std::string csvText(const std::vector<std::string>& fields, char separator);

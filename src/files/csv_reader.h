#pragma once

#include <cstddef>
#include <deque>
#include <istream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// One row of a CSV text.
struct CsvRow
{
    std::size_t line = 0;            ///< the physical line it begins on, from 1
    std::vector<std::string> fields; ///< empty when the quoting is broken
    std::string broken;              ///< then the line as it stands
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

/// What the name in a header says of its column.
enum class CsvKind
{
    unknown,
    text,
    number,
};

/// Finds how the rest of `in` is written: separated by commas, semicolons or tabs, and in the last two with a decimal
/// point or comma. The separator is the one that finds most known columns in the header. Where no number has a decimal
/// mark, it is the one that spreadsheets have beside that separator. Throws CsvProblem when the text can be read in no
/// way or in more than one: another encoding or separator, both decimal marks, one that may separate thousands. A text
/// that no decimal mark makes a number, like "1.2.3", says nothing; who reads the row refuses it. Reads to the end.
CsvFormat findCsvFormat(std::istream& in, CsvKind (*kindOf)(std::string_view name));

/// The rows of an RFC 4180 text, one after the other; lines end in LF, CRLF or CR, and a UTF-8 byte order mark is
/// passed over. Line ends in a quoted field are kept as they are. Rows without any text (a blank line, ",,,") are left
/// out. A row with broken quoting comes without fields, and reading goes on with the line after the one it begins on.
/// Holds one row at a time.
class CsvReader
{
public:
    /// Reads from where `text` stands, which must outlive the reader.
    explicit CsvReader(std::istream& text, char separatedBy = ',') : in(text), separator(separatedBy) {}

    /// Whether there was another row. Throws CsvProblem at a line that is beyond all measure, not in UTF-8 or cannot be
    /// read.
    bool next(CsvRow& row);

    /// Whether the text read last ended in a line end, as a whole file does.
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

/// Whether every byte of `text` has its place in a UTF-8 sequence. Text in a one-byte encoding rarely passes.
bool isUtf8(std::string_view text);

/// The small letter of A to Z, anything else as it is. The C library's own goes by the locale: Turkish has another
/// small letter for I.
constexpr char lowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// A text without the blanks, tabs, line ends and no-break spaces around it.
std::string_view trimmed(std::string_view text);

/// Whether two names differ in nothing but upper and lower case of the letters A to Z and what `trimmed` cuts off.
bool isAlike(std::string_view one, std::string_view other);

/// A text as messages cite it.
std::string inQuotes(const std::string& text);

/// A field as CSV text writes it: quoted where it must be.
std::string csvField(std::string_view text, char separator);

/// A row of fields as CSV text writes it, without its line end.
std::string csvText(const std::vector<std::string>& fields, char separator);

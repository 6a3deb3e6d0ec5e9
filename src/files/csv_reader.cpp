#include "files/csv_reader.h"

#include <csv.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace
{

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t longestRow = 1 << 20; // bytes; longer ones are no rows of numbers and names

struct RowInProgress
{
    std::vector<std::string> fields;
    bool complete = false;
};

void addField(void* text, std::size_t length, void* row)
{
    static_cast<RowInProgress*>(row)->fields.emplace_back(static_cast<const char*>(text), length);
}

void endRow(int, void* row)
{
    static_cast<RowInProgress*>(row)->complete = true;
}

// In RFC 4180, spaces are part of a field; without this, the parser would remove them.
int noSpace(unsigned char)
{
    return 0;
}

/// What the numbers with one mark, "." or ",", say about it.
struct Mark
{
    std::string text;       ///< the first number with the mark
    std::size_t line = 0;   ///< of that number; 0: no number has the mark
    bool isDecimal = false; ///< in some number it cannot be a thousands separator
};

/// What the numbers of a text say about its decimal mark.
class DecimalMarks
{
public:
    explicit DecimalMarks(char separator) : separator_(separator) {}

    void look(const std::string& field, std::size_t line)
    {
        const std::string text(trimmed(field));
        const auto points = std::ranges::count(text, '.');
        const auto commas = std::ranges::count(text, ',');
        const bool isNumber = text.find_first_not_of("0123456789.,+-eE") == std::string::npos;
        if (!isNumber || points + commas == 0)
            return;
        const std::size_t last = text.find_last_of(".,");
        // Between commas, a number with a comma is in quotation marks: it tells only where it has no thousands there.
        const bool isQuoted = commas == 1 && separator_ == ',' && text[last] == ',' && !mayBeThousands(text, last);
        if ((!isQuoted && (points + commas > 1 || (commas > 0 && separator_ == ','))) || !isPlain(text))
            return;
        Mark& mark = commas > 0 ? comma_ : point_;
        if (mark.line == 0)
            mark = {text, line, false};
        mark.isDecimal |= separator_ == ',' || !mayBeThousands(text, text.find_first_of(".,"));
    }

    char found(std::optional<char> usual) const
    {
        if (point_.line > 0 && comma_.line > 0)
            throw CsvProblem(std::max(point_.line, comma_.line), "numbers are written in two ways, " +
                                                                     inQuotes(point_.text) + " and " +
                                                                     inQuotes(comma_.text));
        for (const Mark* mark : {&point_, &comma_})
            if (mark->line > 0 && !mark->isDecimal)
                throw CsvProblem(mark->line, inQuotes(mark->text) +
                                                 " may have a decimal mark or a thousands separator, and no other "
                                                 "number tells which");
        if (point_.line == 0 && comma_.line == 0)
            return usual.value_or(separator_ == ';' ? ',' : '.');
        return comma_.line > 0 && separator_ != ',' ? ',' : '.';
    }

private:
    /// A sign, digits and marks only, one digit at least, as NumberText reads them.
    static bool isPlain(std::string_view text)
    {
        text.remove_prefix(text.front() == '+' || text.front() == '-' ? 1 : 0);
        return text.find_first_of("+-eE") == std::string_view::npos && text.size() > 1;
    }

    /// "1.245" and "12,500", but not "0.245", "1.5" or "1234.567".
    static bool mayBeThousands(const std::string& text, std::size_t mark)
    {
        const std::size_t first = text.find_first_not_of("+-");
        return mark > first && mark - first <= 3 && text[first] != '0' && text.size() - mark == 4;
    }

    char separator_;
    Mark point_;
    Mark comma_;
};

/// The separator that finds most known columns in the header.
char findSeparator(std::istream& in, std::streampos start, CsvKind (*kindOf)(std::string_view name))
{
    char best = ',';
    std::ptrdiff_t mostKnown = 0;
    std::size_t mostFields = 1;
    CsvRow header;
    for (const char separator : {',', ';', '\t'}) {
        in.clear();
        in.seekg(start);
        if (!CsvReader(in, separator).next(header))
            return best;
        const auto known = std::ranges::count_if(
            header.fields, [&](const std::string& name) { return kindOf(name) != CsvKind::unknown; });
        mostFields = std::max(mostFields, header.fields.size());
        if (known > mostKnown) {
            best = separator;
            mostKnown = known;
        }
    }
    if (mostKnown == 0 && mostFields == 1)
        throw CsvProblem(header.line,
                         header.fields.empty()
                             ? "broken quoting of the header; a quotation mark belongs on both sides of a name"
                             : "the columns are separated neither by commas nor by semicolons or tabs");
    return best;
}

/// Finds the byte order mark and the line ends in the first bytes. Throws CsvProblem for UTF-16.
CsvFormat lookAtStart(std::istream& in)
{
    std::array<char, 4096> block{};
    in.read(block.data(), block.size());
    const std::string_view start(block.data(), static_cast<std::size_t>(in.gcount()));
    if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF") || start.find('\0') != std::string_view::npos)
        throw CsvProblem(1, "the file is UTF-16 or no text: save it as CSV in UTF-8");
    CsvFormat format;
    format.byteOrderMark = start.starts_with(byteOrderMark);
    const std::size_t end = start.find_first_of("\r\n");
    if (end != std::string_view::npos)
        format.lineEnd = start.substr(end, start.substr(end).starts_with("\r\n") ? 2 : 1);
    return format;
}

/// Adds a field to a line, quoted where it must be.
void addCsvField(std::string& line, std::string_view text, char separator)
{
    const auto wantsQuotes = [&](char c) { return c == separator || c == '"' || c == '\r' || c == '\n'; };
    if (std::ranges::none_of(text, wantsQuotes)) {
        line += text;
        return;
    }
    line += inDoubledQuotes(text);
}

} // namespace

CsvFormat findCsvFormat(std::istream& in, CsvKind (*kindOf)(std::string_view name), const CsvKnown& known)
{
    const std::streampos start = in.tellg();
    CsvFormat format = lookAtStart(in);
    format.separator = known.separator ? *known.separator : findSeparator(in, start, kindOf);
    in.clear();
    in.seekg(start);
    CsvReader reader(in, format.separator);
    CsvRow row;
    std::vector<std::size_t> numbers;
    if (reader.next(row))
        for (std::size_t at = 0; at < row.fields.size(); ++at)
            if (kindOf(row.fields[at]) == CsvKind::number)
                numbers.push_back(at);
    DecimalMarks marks(format.separator);
    for (; reader.next(row); ++format.rows)
        for (const std::size_t at : numbers)
            if (at < row.fields.size())
                marks.look(row.fields[at], row.line);
    format.decimalMark = marks.found(known.decimalMark);
    return format;
}

/// The next byte of the text, which is not taken; eof() at the end of the text.
int CsvReader::nextByte()
{
    try {
        return in.rdbuf()->sgetc();
    } catch (const std::ios_base::failure& failure) { // the system could not read on
        throw CsvProblem(line + lines.size() + 1, failure.code().message());
    }
}

/// Reads one more physical line; false at the end of the text.
bool CsvReader::readLine()
{
    constexpr int end = std::char_traits<char>::eof();
    Line read;
    int c = nextByte();
    if (c == end)
        return false;
    for (; c != end && c != '\n' && c != '\r'; c = nextByte()) {
        read.text += static_cast<char>(c);
        if (read.text.size() > longestRow)
            throw CsvProblem(line + lines.size() + 1, "a line of more than a million characters");
        in.rdbuf()->sbumpc();
    }
    for (const char sign : {'\r', '\n'})
        if (nextByte() == sign) {
            read.end += sign;
            in.rdbuf()->sbumpc();
        }
    hasEnd = !read.end.empty();
    if (atStart && read.text.starts_with(byteOrderMark))
        read.text.erase(0, byteOrderMark.size());
    atStart = false;
    if (!isUtf8(read.text))
        throw CsvProblem(line + lines.size() + 1, "the text is not UTF-8: save it as CSV in UTF-8");
    lines.push_back(std::move(read));
    return true;
}

bool CsvReader::hasLine(std::size_t at)
{
    return at < lines.size() || readLine();
}

/// Reads the row at the beginning of `lines`. It has more than one line when a quoted field contains line ends. Gives
/// the number of its lines; 0 when its quoting is broken.
std::size_t CsvReader::readRow(std::vector<std::string>& fields)
{
    csv_parser parser;
    csv_init(&parser, CSV_STRICT);
    const std::unique_ptr<csv_parser, decltype(&csv_free)> freed(&parser, csv_free);
    csv_set_delim(&parser, static_cast<unsigned char>(separator));
    csv_set_space_func(&parser, noSpace);
    RowInProgress row;
    row.fields = std::move(fields);
    row.fields.clear();
    std::size_t taken = 0;
    std::size_t size = 0;
    while (!row.complete && size < longestRow && hasLine(taken)) { // an unclosed quote completes no row
        const Line& next = lines[taken++];
        const std::string text = next.text + (next.end.empty() ? "\n" : next.end);
        size += text.size();
        if (csv_parse(&parser, text.data(), text.size(), addField, endRow, &row) != text.size())
            break;
    }
    fields = std::move(row.fields);
    if (row.complete)
        return taken;
    fields.clear();
    return 0;
}

bool CsvReader::next(CsvRow& row)
{
    while (hasLine(0)) {
        const bool isBlank = lines.front().text.empty();
        const std::size_t taken = isBlank ? 1 : std::max<std::size_t>(readRow(row.fields), 1);
        row.line = line + 1;
        row.broken = row.fields.empty() ? lines.front().text : "";
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(taken));
        line += taken;
        const bool hasText = row.fields.empty() ||
                             std::ranges::any_of(row.fields, [](const std::string& field) { return !field.empty(); });
        if (!isBlank && hasText)
            return true;
    }
    return false;
}

std::string csvField(std::string_view text, char separator)
{
    std::string field;
    addCsvField(field, text, separator);
    return field;
}

std::string csvText(const std::vector<std::string>& fields, char separator)
{
    std::string line;
    for (const std::string& field : fields) {
        if (&field != fields.data())
            line += separator;
        addCsvField(line, field, separator);
    }
    return line;
}

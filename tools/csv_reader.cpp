#include "csv_reader.h"

#include <csv.h>

#include <algorithm>
#include <span>

namespace
{

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

// RFC 4180 counts spaces as part of a field; the parser would trim them.
int noSpace(unsigned char)
{
    return 0;
}

std::vector<std::string_view> physicalLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        const std::size_t lineEnd = text.substr(end).starts_with("\r\n") ? 2 : 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + lineEnd, text.size())); // the last line may have no end
    }
    return lines;
}

/// Reads the row that begins `lines`, more than one of them when a quoted field contains line ends. Gives the number of
/// lines it takes, 0 when its quoting is broken.
std::size_t readRow(std::span<const std::string_view> lines, std::vector<std::string>& fields)
{
    csv_parser parser;
    csv_init(&parser, CSV_STRICT);
    csv_set_space_func(&parser, noSpace);
    RowInProgress row;
    std::size_t taken = 0;
    while (!row.complete && taken < lines.size()) { // an unclosed quote takes all lines and completes no row
        const std::string line = std::string(lines[taken++]) + "\n";
        if (csv_parse(&parser, line.data(), line.size(), addField, endRow, &row) != line.size())
            break;
    }
    csv_free(&parser);
    if (!row.complete)
        return 0;
    fields = std::move(row.fields);
    return taken;
}

} // namespace

std::vector<CsvRow> readCsv(std::string_view text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    const std::vector<std::string_view> lines = physicalLines(text);
    std::vector<CsvRow> rows;
    std::size_t at = 0;
    while (at < lines.size()) {
        if (lines[at].empty()) {
            ++at;
            continue;
        }
        CsvRow& row = rows.emplace_back(CsvRow{at + 1, {}});
        const std::size_t taken = readRow(std::span(lines).subspan(at), row.fields);
        at += taken == 0 ? 1 : taken;
    }
    return rows;
}

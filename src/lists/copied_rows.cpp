#include "lists/copied_rows.h"

#include "lists/duty_list.h"
#include "lists/words.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace
{

constexpr char tab = '\t';
constexpr std::size_t mostRows = 5'000; // about a second, in which the window waits

/// The length of the quoted cell at the beginning of a text; 0 when there is none. Spreadsheets put a cell with a line
/// break in quotation marks and double the quotation marks inside. Some leave a cell like "A" tank as it is: a tab
/// always ends a cell, so that such a cell does not run on into the next one.
std::size_t quotedLength(std::string_view text)
{
    if (!text.starts_with('"'))
        return 0;
    for (std::size_t at = 1; at < text.size() && text[at] != tab; ++at) {
        const std::string_view after = text.substr(at + 1);
        if (text[at] != '"')
            continue;
        if (!after.starts_with('"'))
            return after.empty() || after.find_first_of("\t\r\n") == 0 ? at + 1 : 0;
        ++at; // the second of a doubled quotation mark
    }
    return 0;
}

/// Removes the first cell from a text and gives it. Line breaks in it become blanks, so that a row is one line.
std::string takeCell(std::string_view& text)
{
    const std::size_t quoted = quotedLength(text);
    const std::size_t length = quoted > 0 ? quoted : std::min(text.find_first_of("\t\r\n"), text.size());
    const std::string_view inside = quoted > 0 ? text.substr(1, length - 2) : text.substr(0, length);
    std::string cell;
    for (std::size_t at = 0; at < inside.size(); ++at) {
        if (inside[at] != '\r')
            cell += inside[at] == '\n' ? ' ' : inside[at];
        if (quoted > 0 && inside[at] == '"')
            ++at;
    }
    text.remove_prefix(length);
    return cell;
}

/// The copied rows as CSV text, a line each.
std::string csvOf(std::string_view copied)
{
    std::string csv;
    while (!copied.empty()) {
        csv += csvField(takeCell(copied), tab);
        csv += copied.starts_with(tab) ? tab : '\n';
        copied.remove_prefix(std::min<std::size_t>(copied.starts_with("\r\n") ? 2 : 1, copied.size()));
    }
    return csv;
}

CopiedRows sizeAll(DutyList& list, std::size_t headerLine)
{
    std::vector<std::string> lacking = list.lacking();
    if (!lacking.empty() && lacking.front() != "Tank Volume") // Direct Displacement needs none
        return {"", "Nothing is sized: the first copied row must be the header, and it lacks " +
                        listed(lacking, " and ") + '.'};
    if (list.isAnswer())
        return {"", "Nothing is sized: the copied rows have results already. Copy the columns of the list alone."};
    if (list.rowCount() == 0 || list.rowCount() > mostRows)
        return {"", list.rowCount() == 0 ? "Nothing is sized: copy the rows below the header, too."
                                         : "Nothing is sized: these are more than 5000 rows. Save them as a CSV file "
                                           "and take \"Size a List\"."};
    std::string added = std::string(headerLine - 1, '\n') + list.addedHeader();
    std::size_t line = headerLine + 1; // the next one in the answer
    std::size_t counts[] = {0, 0, 0};  // by status
    while (const std::optional<SizedDuty> duty = list.next()) {
        added += std::string(duty->row.line - line, '\n') + list.added(*duty); // `next` passes over empty rows
        line = duty->row.line + 1;
        ++counts[static_cast<std::size_t>(duty->status)];
    }
    const auto [sized, refused, failed] = counts;
    std::string outcome = std::to_string(sized) + " of " + std::to_string(list.rowCount()) +
                          (list.rowCount() == 1 ? " row sized" : " rows sized");
    if (refused > 0)
        outcome += ", " + std::to_string(refused) + " refused";
    if (failed > 0)
        outcome += ", " + std::to_string(failed) + " failed";
    outcome += list.rowCount() == 1 ? ": paste it beside the list." : ": paste them beside the list.";
    if (refused > 0 && !lacking.empty())
        outcome += " The header lacks " + listed(lacking, " and ") + '.';
    return {added, outcome + sentences(list.notes())};
}

} // namespace

CopiedRows sizeCopiedRows(const std::string& copied, const std::string& dataFile, char decimalMark)
{
    std::istringstream csv(csvOf(copied));
    try {
        CsvRow header;
        if (!CsvReader(csv, tab).next(header))
            return {"", "Nothing is copied that can be sized: copy the rows of a list in a spreadsheet, with their "
                        "header."};
        csv.clear();
        csv.seekg(0);
        DutyList list(csv, dataFile, {tab, decimalMark});
        return sizeAll(list, header.line);
    } catch (const CsvProblem& problem) {
        return {"", "Nothing is sized: row " + std::to_string(problem.line) + " of the copied ones, " + problem.what() +
                        '.'};
    } catch (const std::exception& failure) {
        return {"", std::string("Nothing is sized: ") + failure.what() + '.'};
    }
}

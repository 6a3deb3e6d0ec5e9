#include "lists/verification.h"

#include "files/csv_reader.h"
#include "files/system.h"
#include "lists/duty_list.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace
{

constexpr const char* firstAnswer = "Status"; // the column where the entries end
constexpr const char* nextLine = "\n                       ";
constexpr const char* signature = R"(
Name       ________________________________________

Date       ________________________________________

Signature  ________________________________________
)";

using Fields = std::vector<std::string>;

struct Table
{
    std::string name; ///< of the file
    bool isReadable = false;
    std::string text;
};

/// Label and checksum of a data file, or why it cannot be read.
Table describeTables(const std::string& file)
{
    const NumberText numbers;
    CapacityStore store(file, numbers);
    const std::optional<TablesLabel> label = tablesLabel(store);
    const std::string checksum = tablesChecksum(store);
    if (const std::string reason = store.whyUnreadable(); !reason.empty())
        return {file, false, reason};
    return {file, true,
            (label ? describe(*label) : "not labelled") +
                (checksum.empty() ? ", without checksum" : ", checksum " + checksum)};
}

/// The header and the duties below it, each with as many fields. The last row of the file says how many they are, so
/// that a file that was cut is noticed.
std::vector<Fields> readList(const std::string& file)
{
    std::ifstream in(pathOf(file), std::ios::binary);
    if (!in)
        throw std::runtime_error(file + ": " + std::strerror(errno));
    CsvReader reader(in);
    std::vector<Fields> rows;
    for (CsvRow row; reader.next(row);) {
        if (row.fields.empty() || (!rows.empty() && row.fields.size() != rows.front().size()))
            throw std::runtime_error(file + ':' + std::to_string(row.line) + ": not a row of this list");
        rows.push_back(row.fields);
    }
    if (rows.size() < 3 || rows.back().front() != "end of " + std::to_string(rows.size() - 2) + " duties")
        throw std::runtime_error(file + ": rows are missing");
    rows.pop_back();
    return rows;
}

/// 1200.5 as 1200,5; anything but a number stays.
std::string withComma(std::string field)
{
    if (field.find_first_not_of("0123456789.") == std::string::npos)
        std::ranges::replace(field, '.', ',');
    return field;
}

/// The entries of all rows as a list that `DutyList` reads.
std::string entriesOf(const std::vector<Fields>& rows, std::size_t entries, char separator)
{
    std::string text;
    for (const Fields& row : rows) {
        for (std::size_t at = 0; at < entries; ++at)
            text += (at == 0 ? "" : std::string(1, separator)) + csvField(row[at], separator);
        text += '\n';
    }
    return text;
}

Fields fieldsOf(const std::string& line, char separator)
{
    std::istringstream in(line);
    CsvReader reader(in, separator);
    CsvRow row;
    reader.next(row);
    return row.fields;
}

/// A row like `row`: its entries, then the results of the answer in the order of `header`.
Fields foundUnder(const Fields& header, std::size_t entries, const Fields& row, const Fields& names,
                  const Fields& answer)
{
    Fields found(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(entries));
    for (std::size_t at = entries; at < header.size(); ++at) {
        const auto place = static_cast<std::size_t>(std::ranges::find(names, header[at]) - names.begin());
        found.push_back(place < answer.size() ? answer[place] : "");
    }
    return found;
}

/// The report of a duty whose answer differs, with all its entries; "" when the answers agree.
std::string difference(const Fields& header, std::size_t entries, const Fields& expected, const Fields& found)
{
    if (found == expected)
        return "";
    std::string text = '\n' + expected.front() + '\n';
    for (std::size_t at = 1; at < entries; ++at)
        if (!expected[at].empty())
            text += "    " + header[at] + ": " + expected[at] + '\n';
    for (std::size_t at = entries; at < header.size(); ++at)
        if (found[at] != expected[at])
            text +=
                "  " + header[at] + ": expected " + inQuotes(expected[at]) + ", found " + inQuotes(found[at]) + '\n';
    return text;
}

} // namespace

Verification verifyProgram(const VerificationPlace& place)
{
    const Table tables = describeTables(place.directory + "/verification.mdb");
    const Table site = describeTables(place.dataFile);
    std::string differences;
    std::string outcome;
    bool agrees = false;
    try {
        std::vector<Fields> rows = readList(place.directory + "/duties.csv");
        const Fields header = rows.front();
        const auto entries = static_cast<std::size_t>(std::ranges::find(header, firstAnswer) - header.begin());
        if (entries == header.size())
            throw std::runtime_error("the list of duties has no answers");
        if (!site.isReadable)
            throw std::runtime_error("the tables of this site cannot be read");
        if (place.decimalComma)
            for (Fields& row : rows)
                std::ranges::transform(row, row.begin(), withComma);
        const char separator = place.decimalComma ? ';' : ',';
        std::istringstream list(entriesOf(rows, entries, separator));
        DutyList duties(list, tables.name);
        const Fields names = fieldsOf(duties.answerHeader(), separator);
        std::size_t agreeing = 0;
        for (std::size_t at = 1; at < rows.size(); ++at) {
            const std::optional<SizedDuty> duty = duties.next();
            const Fields answer = duty ? fieldsOf(duties.answer(*duty), separator) : Fields();
            const Fields found = foundUnder(header, entries, rows[at], names, answer);
            const std::string different = difference(header, entries, rows[at], found);
            agreeing += different.empty() ? 1 : 0;
            differences += different;
        }
        const std::size_t count = rows.size() - 1;
        outcome = std::to_string(agreeing) + " of " + std::to_string(count) + " duties agree";
        agrees = agreeing == count;
    } catch (const std::exception& failure) {
        outcome = std::string("Not verified: ") + failure.what();
    }
    std::ostringstream report;
    report << "Verification of Halvor-ORM Blanketing Valve Sizing " SIZING_VERSION "\n\n"
           << "System                 " << place.system << '\n'
           << "Locale                 " << place.locale
           << (place.decimalComma ? ", decimal comma\n" : ", decimal point\n") << "Played on              "
           << place.today << '\n'
           << "Verification tables    " << tables.name << nextLine << tables.text << '\n'
           << "Tables of this site    " << site.name << nextLine << site.text << "\n\n"
           << outcome << '\n'
           << differences << signature;
    return {report.str(), agrees};
}

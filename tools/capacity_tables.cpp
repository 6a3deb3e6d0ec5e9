#include "capacity_tables.h"

#include "base/offered.h"
#include "capacity/cv_series.h"
#include "csv_reader.h"
#include "engine/tank_limits.h"
#include "findings.h"
#include "system.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>
#include <optional>

const std::array<LargeTankTableSpec, 2> largeTankTableSpecs{{
    // The factors of API Standard 2000, repeated from engine/required_flow.cpp: a slip there is not repeated here.
    {"USLargeTank", choice::us, "gal", smallTankGallons, largestTankGallons, 1.0 / 42, 0.0143},
    {"MetriclargeTank", choice::metric, "m3", smallTankCubicMeters, largestTankCubicMeters, 0.169, 0.1},
}};

const Rule tooManyRows{Severity::error, "a table too large for the program, which reads it at every click",
                       "leave out rows"};

namespace
{

constexpr Rule fileUnreadable{Severity::error, "the file cannot be read"};
constexpr Rule readInTwoWays{Severity::error, "a text that cannot be read in exactly one way"};
constexpr Rule columnsUnclear{Severity::error, "the columns are not clear", "correct the header row"};
constexpr Rule tableIsEmpty{Severity::error, "a table without rows", "add its rows"};
constexpr Rule rowDoesNotFit{Severity::error, "a row does not fit the header", "add or delete fields"};
constexpr Rule quotingBroken{Severity::error, "broken quoting", "write a text with a quotation mark like \"1/2\"\"\""};
constexpr Rule isNoNumber{Severity::error, "not a number", "correct it, or delete the row"};
constexpr Rule textUnplain{Severity::error, "a text that cannot be shown", "correct it"};
constexpr Rule lastLineHasNoEnd{Severity::warning, "the last line has no end, as if the file had been cut",
                                "look whether rows are missing"};

constexpr const char* digitsOnly = "a number in digits, not negative";

/// Reads the CSV file of one table.
template <typename Row>
class TableReader
{
public:
    TableReader(std::filesystem::path path, Findings& findings) : path_(std::move(path)), findings_(findings)
    {
        table_.source = textOf(path_.filename());
        table_.isWhole = true;
    }

    Table<Row> read()
    {
        errno = 0;
        std::ifstream in(path_, std::ios::binary);
        in.peek(); // a directory can be opened, but not read
        if (in.bad() || !in.is_open()) {
            const std::string reason = whyUnreadable(path_);
            report(fileUnreadable, 0, reason.empty() ? std::strerror(errno) : reason);
            return std::move(table_);
        }
        in.clear();
        try {
            readRows(in);
        } catch (const CsvProblem& problem) {
            report(readInTwoWays, problem.line, problem.what());
        }
        return std::move(table_);
    }

private:
    void report(const Rule& rule, std::size_t line, const std::string& found, const std::string& expected = "")
    {
        findings_.report(rule, table_.source, line, found, expected);
        table_.isWhole &= rule.severity != Severity::error;
    }

    void readRows(std::istream& in)
    {
        std::vector<CsvColumn> columns;
        for (const Column<Row>& column : columnsOf<Row>())
            columns.push_back({column.name, std::holds_alternative<double Row::*>(column.member)});
        format_ = findCsvFormat(in, columns);
        in.clear();
        in.seekg(0);
        CsvReader reader(in, format_.separator);
        CsvRow csv;
        if (!reader.next(csv)) {
            report(columnsUnclear, 1, "the header row is missing");
            return;
        }
        readHeader(csv);
        if (!table_.isWhole) // what stands in the rows cannot be told
            return;
        const std::size_t headerLine = csv.line;
        bool hasRows = false;
        for (; reader.next(csv); hasRows = true) {
            if (table_.rows.size() == mostRows) {
                report(tooManyRows, csv.line, "there are more", atMostRows);
                return;
            }
            readRow(csv);
        }
        if (!hasRows)
            report(tableIsEmpty, headerLine, "");
        if (!reader.lastLineHasEnd())
            report(lastLineHasNoEnd, csv.line,
                   csv.fields.empty() ? "" : "the field \"" + shown(csv.fields.back()) + '"');
    }

    /// Finds the column that each field of the header names; columns without a name at its end are left out.
    void readHeader(CsvRow& header)
    {
        if (header.fields.empty())
            report(quotingBroken, header.line, "");
        while (!header.fields.empty() && header.fields.back().empty())
            header.fields.pop_back();
        for (const std::string& name : header.fields) {
            const auto column =
                std::ranges::find_if(columnsOf<Row>(), [&](const auto& one) { return name == one.name; });
            const bool known = column != columnsOf<Row>().end();
            const bool doubled = known && std::ranges::find(order_, &*column) != order_.end();
            if (!known)
                report(columnsUnclear, header.line, "unknown column \"" + shown(name) + '"');
            else if (doubled)
                report(columnsUnclear, header.line, "column " + name + " stands twice");
            order_.push_back(known && !doubled ? &*column : nullptr);
        }
        for (const Column<Row>& column : columnsOf<Row>())
            if (!header.fields.empty() && std::ranges::find(order_, &column) == order_.end())
                report(columnsUnclear, header.line, std::string("column ") + column.name + " is missing");
    }

    void readRow(CsvRow& csv)
    {
        if (csv.fields.empty()) {
            report(quotingBroken, csv.line, "");
            return;
        }
        while (csv.fields.size() > order_.size() && csv.fields.back().empty()) // columns that a spreadsheet adds
            csv.fields.pop_back();
        if (csv.fields.size() != order_.size()) {
            report(rowDoesNotFit, csv.line, std::to_string(csv.fields.size()) + " fields",
                   std::to_string(order_.size()) + " as in the header");
            return;
        }
        Row row;
        row.line = csv.line;
        bool good = true;
        for (std::size_t at = 0; at < order_.size(); ++at) {
            if (!order_[at])
                continue;
            const auto readInto = [&](auto member) {
                return readField(csv.fields[at], order_[at]->name, row.*member, csv.line);
            };
            good = std::visit(readInto, order_[at]->member) && good;
        }
        table_.isWhole &= good;
        if (good)
            table_.rows.push_back(std::move(row));
    }

    bool readField(std::string text, const char* column, double& value, std::size_t line)
    {
        const std::string named = std::string(column) + " \"" + shown(text) + '"';
        if (format_.decimalMark != '.')
            std::ranges::replace(text, format_.decimalMark, '.');
        const auto [stop, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (failure == std::errc() && stop == text.data() + text.size())
            return checkValue(value, column, table_.source, line, findings_);
        report(isNoNumber, line, text.empty() ? std::string(column) + " is empty" : named, digitsOnly);
        return false;
    }

    bool readField(const std::string& text, const char* column, std::string& value, std::size_t line)
    {
        value = text;
        return checkValue(text, column, table_.source, line, findings_);
    }

    std::filesystem::path path_;
    Findings& findings_;
    Table<Row> table_;
    CsvFormat format_;
    std::vector<const Column<Row>*> order_; ///< the column of each field, nullptr for one that should not be there
};

/// Whether nothing of a text would be seen.
bool isBlank(std::string_view text)
{
    constexpr std::string_view blanks[] = {" ",      "\t",     "\r",     "\n",     "\u00A0", "\u1680",
                                           "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005",
                                           "\u2006", "\u2007", "\u2008", "\u2009", "\u200A", "\u200B",
                                           "\u2028", "\u2029", "\u202F", "\u205F", "\u3000", "\uFEFF"};
    while (!text.empty()) {
        const auto blank = std::ranges::find_if(blanks, [&](std::string_view one) { return text.starts_with(one); });
        if (blank == std::end(blanks))
            return false;
        text.remove_prefix(blank->size());
    }
    return true;
}

std::string fieldText(double value)
{
    return numberText(value);
}

std::string fieldText(const std::string& text)
{
    return csvField(text, ',');
}

} // namespace

std::vector<ValveTableSpec> valveTableSpecs()
{
    std::vector<ValveTableSpec> tables;
    for (const Offer& offer : offers) {
        const auto known = std::ranges::find(tables, offer.valveTable, &ValveTableSpec::name);
        if (known == tables.end()) {
            tables.push_back({offer.valveTable, offer.valveType, offer.unitSystem, offer.pressUnits,
                              cvSeries(offer.valveType), offer.lowest, offer.highest});
        } else {
            known->lowest = std::min(known->lowest, offer.lowest);
            known->highest = std::max(known->highest, offer.highest);
        }
    }
    return tables;
}

std::string numberText(double value)
{
    std::array<char, 400> text; // the largest double has 309 digits
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed).ptr};
}

bool checkValue(double value, const char* column, std::string_view file, std::size_t line, Findings& findings)
{
    if (std::isfinite(value) && !std::signbit(value))
        return true;
    findings.report(isNoNumber, file, line,
                    std::string(column) + ' ' + (std::isfinite(value) ? shown(numberText(value)) : "not finite"),
                    digitsOnly);
    return false;
}

const char* textFault(std::string_view text)
{
    if (isBlank(text))
        return "is empty";
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const bool isFirstOfControl =
            byte == 0xC2 && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0;
        if (byte < ' ' || byte == 0x7F || isFirstOfControl) // U+0080 to U+009F are C2 80 to C2 9F
            return "has a control character";
    }
    return isUtf8(text) ? nullptr : "is not UTF-8";
}

bool checkValue(const std::string& value, const char* column, std::string_view file, std::size_t line,
                Findings& findings)
{
    const char* const fault = textFault(value);
    if (fault != nullptr)
        findings.report(textUnplain, file, line, std::string(column) + ' ' + fault, "plain UTF-8 text");
    return fault == nullptr;
}

CapacityTables readCapacityTables(const std::filesystem::path& directory, Findings& findings)
{
    CapacityTables tables;
    const auto pathOf = [&](std::string_view table) { return directory / (std::string(table) + ".csv"); };
    for (const ValveTableSpec& table : valveTableSpecs())
        tables.valves[std::string(table.name)] = TableReader<CapacityRow>(pathOf(table.name), findings).read();
    for (const LargeTankTableSpec& table : largeTankTableSpecs)
        tables.largeTanks[std::string(table.name)] = TableReader<LargeTankRow>(pathOf(table.name), findings).read();
    return tables;
}

template <typename Row>
std::string csvText(const Table<Row>& table)
{
    std::string text;
    const auto addLine = [&](const auto& fieldOf) {
        for (const Column<Row>& column : columnsOf<Row>())
            text += (&column == columnsOf<Row>().data() ? "" : ",") + fieldOf(column);
        text += '\n';
    };
    addLine([](const Column<Row>& column) { return std::string(column.name); });
    for (const Row& row : table.rows)
        addLine([&](const Column<Row>& column) {
            return std::visit([&](auto member) { return fieldText(row.*member); }, column.member);
        });
    return text;
}

template std::string csvText(const Table<CapacityRow>& table);
template std::string csvText(const Table<LargeTankRow>& table);

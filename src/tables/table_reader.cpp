#include "tables/table_reader.h"

#include "files/csv_reader.h"
#include "files/system.h"
#include "tables/findings.h"
#include "tables/flow_units.h"
#include "tables/number_style.h"
#include "tables/table_layout.h"
#include "tables/table_text.h"

#include <algorithm>
#include <charconv>
#include <sstream>

namespace
{

constexpr Rule encodingWrong{Severity::error, "the text is not UTF-8", "save it as \"CSV UTF-8\""};
constexpr Rule columnsUnclear{Severity::error, "the columns are not clear", "correct the header row"};
constexpr Rule quotingBroken{Severity::error, "broken quoting", "write a text with a quotation mark like \"1/2\"\"\""};

std::string quotedText(const std::string& text)
{
    return inQuotes(messageText(text));
}

template <typename Row>
class TableReader
{
public:
    TableReader(std::filesystem::path path, const TableUnits& units, Findings& findings)
        : path_(std::move(path)), units_(units), findings_(findings)
    {
        table_.source = textOf(path_.filename());
        for (const Column<Row>& column : columnsOf<Row>())
            columns_.push_back({column.name, std::holds_alternative<double Row::*>(column.member)});
    }

    Table<Row> read()
    {
        if (const auto bytes = bytesOf(path_, findings_)) {
            const TableText text = decoded(*bytes);
            if (text.encoding != nullptr)
                report(encodingWrong, text.line, text.encoding, "UTF-8");
            try {
                if (splitRows(text.text))
                    readRows();
            } catch (const CsvProblem& problem) {
                report(fileTooLarge, problem.line, problem.what());
                table_.isReadable = false;
            }
        }
        return std::move(table_);
    }

private:
    void report(const Rule& rule, std::size_t line, const std::string& found, const std::string& expected = "")
    {
        findings_.report(rule, table_.source, line, found, expected);
    }

    static constexpr Rule columnsNotSeparated{Severity::error, "the columns are not separated", "save it as CSV"};

    /// Splits the text by the separator that finds most column names. Gives whether there is a
    /// table in it.
    bool splitRows(const std::string& text)
    {
        std::size_t most = 0;
        std::size_t fields = 0;
        for (const char separator : {',', ';', '\t'}) {
            std::istringstream in(text);
            CsvReader reader(in, separator);
            std::vector<CsvRow> rows;
            for (CsvRow row; rows.size() <= mostRows + 1 && reader.next(row);)
                rows.push_back(row);
            std::size_t known = 0;
            std::size_t widest = 0;
            for (std::size_t at = 0; at < std::min<std::size_t>(rows.size(), 10); ++at) {
                known = std::max(known, namesIn(rows[at], columns_));
                widest = std::max(widest, rows[at].fields.size());
            }
            if (separator != ',' && known <= most && (known < most || widest <= fields))
                continue;
            most = known;
            fields = widest;
            separator_ = separator;
            rows_ = std::move(rows);
            lastLineHasEnd_ = reader.lastLineHasEnd();
        }
        if (rows_.empty())
            report(columnsUnclear, 1, "the header row is missing", namesOfColumns());
        else if (fields == 1)
            report(columnsNotSeparated, rows_.front().line, "neither by commas nor by semicolons or tabs");
        return !rows_.empty() && fields != 1;
    }

    std::string namesOfColumns() const
    {
        std::string names;
        for (const CsvColumn& column : columns_)
            names += (names.empty() ? "" : ", ") + std::string(column.name);
        return names;
    }

    static constexpr Rule figuresBeforeHeader{Severity::error, "a row of figures before the header",
                                              "move it below, or delete it"};
    static constexpr Rule titlePassedOver{Severity::note, "passed over, as it stands before the header"};
    static constexpr Rule tableIsEmpty{Severity::error, "a table without rows", "add its rows"};
    static constexpr Rule nothingInRow{Severity::error, "a row without a figure", "delete it, or enter the figure"};
    static constexpr Rule lastLineHasNoEnd{Severity::warning, "the last line has no end, as if the file had been cut",
                                           "look whether rows are missing"};

    void readRows()
    {
        layout_ = findLayout(rows_, columns_);
        for (std::size_t at = 0; at < layout_.header; ++at)
            report(numbersIn(rows_[at]) > 1 ? figuresBeforeHeader : titlePassedOver, rows_[at].line,
                   quotedText(rows_[at].fields.empty() ? rows_[at].broken : rows_[at].fields.front()));
        const CsvRow& header = rows_[layout_.header];
        table_.isReadable = checkHeader(header);
        if (layout_.hasUnitsRow)
            checkUnits(rows_[layout_.header + 1]);
        if (!table_.isReadable) // without its columns a row means nothing
            return;
        rows_.erase(rows_.begin(),
                    rows_.begin() + static_cast<std::ptrdiff_t>(layout_.header + 1) + layout_.hasUnitsRow);
        findStyle();
        for (CsvRow& row : rows_) {
            if (table_.rows.size() >= mostRows) {
                report(tooManyRows, row.line, "there are more", atMostRows);
                table_.isReadable = false;
                return;
            }
            unread_ += !readRow(row);
        }
        for (const auto& [column, found] : nothing_) {
            report(nothingInRow, found.line,
                   column + (found.sample.empty() ? " is empty" : ' ' + quotedText(found.sample)) + " in " +
                       std::to_string(found.count) + (found.count == 1 ? " row" : " rows, the first of them here"),
                   "a number");
            // Such rows are read: they say that there is no valve.
            unread_ -= static_cast<std::ptrdiff_t>(found.count);
        }
        if (rows_.empty())
            report(tableIsEmpty, header.line, "");
        else if (!lastLineHasEnd_)
            report(lastLineHasNoEnd, rows_.back().line,
                   rows_.back().fields.empty() ? "" : "the field " + quotedText(rows_.back().fields.back()));
        table_.isReadable = 10 * unread_ <= std::ssize(rows_) && !table_.rows.empty();
    }

    static std::ptrdiff_t numbersIn(const CsvRow& row)
    {
        return std::ranges::count_if(row.fields, [](std::string_view text) {
            return !text.empty() && text.find_first_not_of("0123456789.,") == std::string_view::npos;
        });
    }

    /// Whether each column is there, by its name or a similar one. Columns without a name at the
    /// end are left out.
    bool checkHeader(const CsvRow& header)
    {
        if (header.fields.empty()) {
            report(quotingBroken, header.line, "");
            return false;
        }
        while (!layout_.fields.empty() && trimmed(layout_.fields.back().text).empty())
            layout_.fields.pop_back();
        std::vector<std::size_t> seen;
        for (HeaderField& field : layout_.fields) {
            const bool isKnown = field.column != HeaderField::none;
            if (isKnown && std::ranges::find(seen, field.column) != seen.end()) {
                report(columnsUnclear, header.line, "column " + quotedText(field.text) + " stands twice",
                       "each column once");
                field.column = HeaderField::none;
            } else if (isKnown && !field.isExact) {
                report(columnsUnclear, header.line, "unknown column " + quotedText(field.text),
                       "perhaps " + quotedText(std::string(columns_[field.column].name)));
            } else if (!isKnown && !field.cv) {
                report(columnsUnclear, header.line, "unknown column " + quotedText(field.text), namesOfColumns());
            } else if (field.cv && field.bodySize.empty()) {
                report(columnsUnclear, header.line, "column " + quotedText(field.text) + " names no body size",
                       "a name like \"Cv 0.2 1/2\"\"\"");
                field.bodySize = "?";
            }
            if (isKnown)
                seen.push_back(field.column);
            checkUnit(field, field.unit, header.line);
        }
        bool hasAll = true;
        for (std::size_t at = 0; at < columns_.size(); ++at)
            if ((at == 0 || !layout_.isByCv) && std::ranges::find(seen, at) == seen.end()) {
                report(columnsUnclear, header.line, "column " + std::string(columns_[at].name) + " is missing",
                       namesOfColumns());
                hasAll = false;
            }
        return hasAll;
    }

    void checkUnits(const CsvRow& row)
    {
        for (std::size_t at = 0; at < std::min(row.fields.size(), layout_.fields.size()); ++at)
            checkUnit(layout_.fields[at], row.fields[at], row.line);
    }

    static constexpr Rule unitDiffers{Severity::error, "figures in another unit",
                                      "convert them in the spreadsheet; nothing is converted unseen"};

    void checkUnit(const HeaderField& field, const std::string& unit, std::size_t line)
    {
        const bool isCoefficient =
            !field.cv && field.column != HeaderField::none && columns_[field.column].name == "CV";
        if (!field.isNumber(columns_) || isCoefficient || isNothing(unit))
            return;
        const std::string_view wanted = field.column == 0 ? units_.first : units_.flow;
        const auto factor = factorTo(unit, wanted, units_.isNitrogen);
        if (factor && std::abs(*factor - 1) < 1e-6)
            return;
        char text[48] = "";
        if (factor)
            std::snprintf(text, sizeof text, ", %.6g times the figures", *factor);
        report(unitDiffers, line, quotedText(field.text) + " in " + quotedText(unit), std::string(wanted) + text);
    }

    static constexpr Rule numbersUnclear{Severity::error, "numbers cannot be read in exactly one way",
                                         "format the cells as plain numbers and save them again"};

    void findStyle()
    {
        std::vector<NumberField> numbers;
        for (const CsvRow& row : rows_)
            for (std::size_t at = 0; at < std::min(row.fields.size(), layout_.fields.size()); ++at)
                if (layout_.fields[at].isNumber(columns_))
                    numbers.push_back({row.fields[at], row.line});
        style_ = findNumberStyle(numbers, separator_);
        if (!style_.fault.empty())
            report(numbersUnclear, style_.line, style_.fault, style_.expected);
    }

    static constexpr Rule rowDoesNotFit{Severity::error, "a row does not fit the header", "add or delete fields"};

    /// Whether the row could be read.
    bool readRow(CsvRow& csv)
    {
        if (csv.fields.empty()) {
            report(quotingBroken, csv.line, "");
            return false;
        }
        while (csv.fields.size() > layout_.fields.size() &&
               csv.fields.back().empty()) // empty columns that a spreadsheet adds
            csv.fields.pop_back();
        if (csv.fields.size() != layout_.fields.size()) {
            report(rowDoesNotFit, csv.line, std::to_string(csv.fields.size()) + " fields",
                   std::to_string(layout_.fields.size()) + " as in the header");
            return false;
        }
        Row row;
        row.line = csv.line;
        bool good = true;
        for (std::size_t at = 0; at < csv.fields.size(); ++at)
            if (const std::size_t column = layout_.fields[at].column; column != HeaderField::none) {
                const auto readInto = [&](auto member) {
                    return readField(csv.fields[at], columnsOf<Row>()[column].name, row.*member, csv.line);
                };
                good = std::visit(readInto, columnsOf<Row>()[column].member) && good;
            }
        if (good && !layout_.isByCv)
            table_.rows.push_back(row);
        return good && (!layout_.isByCv || addRowsByCv(row, csv));
    }

    /// Adds a row for each column of flows that has a figure at this pressure.
    bool addRowsByCv([[maybe_unused]] Row row, [[maybe_unused]] const CsvRow& csv)
    {
        bool good = true;
        if constexpr (std::is_same_v<Row, CapacityRow>)
            for (std::size_t at = 0; at < csv.fields.size(); ++at)
                if (const HeaderField& field = layout_.fields[at]; field.cv && !isNothing(csv.fields[at])) {
                    row.cv = *field.cv;
                    row.bodySize = field.bodySize;
                    const bool isRead = readField(csv.fields[at], field.text.c_str(), row.flow, csv.line);
                    if (isRead)
                        table_.rows.push_back(row);
                    good &= isRead;
                }
        return good;
    }

    bool readField(const std::string& text, const char* column, double& value, std::size_t line)
    {
        if (isNothing(text)) {
            Nothing& found = nothing_[column];
            if (found.count++ == 0)
                found = {1, line, text};
            return false;
        }
        const std::string number = style_.plain(text);
        const auto [stop, failure] = std::from_chars(number.data(), number.data() + number.size(), value);
        if (failure == std::errc() && stop == number.data() + number.size())
            return checkValue(value, column, table_.source, line, findings_);
        report(isNoNumber, line, std::string(column) + (text.empty() ? " is empty" : ' ' + quotedText(text)),
               digitsOnly);
        return false;
    }

    bool readField(const std::string& text, const char* column, std::string& value, std::size_t line)
    {
        value = text;
        return checkValue(text, column, table_.source, line, findings_);
    }

    std::filesystem::path path_;
    TableUnits units_;
    Findings& findings_;
    Table<Row> table_;
    std::vector<CsvColumn> columns_;
    char separator_ = ',';
    std::vector<CsvRow> rows_;
    bool lastLineHasEnd_ = true;
    TableLayout layout_;
    NumberStyle style_;
    std::ptrdiff_t unread_ = 0; ///< rows

    struct Nothing
    {
        std::size_t count = 0;
        std::size_t line = 0; ///< of the first one
        std::string sample;
    };
    std::map<std::string, Nothing> nothing_; ///< fields with "-" or nothing, by column
};

} // namespace

template <typename Row>
Table<Row> readTable(const std::filesystem::path& path, const TableUnits& units, Findings& findings)
{
    return TableReader<Row>(path, units, findings).read();
}

template Table<CapacityRow> readTable(const std::filesystem::path&, const TableUnits&, Findings&);
template Table<LargeTankRow> readTable(const std::filesystem::path&, const TableUnits&, Findings&);

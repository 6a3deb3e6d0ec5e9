#include "capacity_tables.h"

#include "base/number_text.h"
#include "base/offered.h"
#include "capacity/cv_series.h"
#include "csv_reader.h"
#include "engine/tank_limits.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <optional>
#include <ostream>
#include <span>

namespace
{

/// A valve table and what it must hold: every pressure that any model lets a user enter for it.
struct ValveTable
{
    std::string_view name;
    std::string_view pressUnits;
    std::span<const float> cvSeries;
    double lowest;
    double highest;
};

std::vector<ValveTable> valveTables()
{
    std::vector<ValveTable> tables;
    for (const Offer& offer : offers) {
        const auto known = std::ranges::find(tables, offer.valveTable, &ValveTable::name);
        if (known == tables.end()) {
            tables.push_back(
                {offer.valveTable, offer.pressUnits, cvSeries(offer.valveType), offer.lowest, offer.highest});
        } else {
            known->lowest = std::min(known->lowest, offer.lowest);
            known->highest = std::max(known->highest, offer.highest);
        }
    }
    return tables;
}

/// Volumes, in `volUnits`, that are looked up in a large-tank table rather than computed.
struct LargeTankTable
{
    const char* name;
    const char* volUnits;
    double lowest;
    double highest;
};

constexpr std::array<LargeTankTable, 2> largeTankTables{{
    {"USLargeTank", "gal", smallTankGallons, largestTankGallons},
    {"MetriclargeTank", "m3", smallTankCubicMeters, largestTankCubicMeters},
}};

/// Where a finding belongs.
struct Place
{
    const std::string& file;
    std::size_t line;
    Findings& findings;

    void error(const std::string& reason) const { findings.error(file, line, reason); }
};

/// Shortest text that reads back as `value`.
template <typename Number>
std::string shortest(Number value)
{
    std::array<char, 32> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

/// Whether every byte of `text` has its place in a UTF-8 sequence. Text in a one-byte encoding rarely passes.
bool isUtf8(std::string_view text)
{
    const auto isContinuation = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; };
    while (!text.empty()) {
        const auto lead = static_cast<unsigned char>(text.front());
        const std::size_t length = lead < 0x80   ? 1
                                   : lead < 0xC2 ? 0
                                   : lead < 0xE0 ? 2
                                   : lead < 0xF0 ? 3
                                   : lead < 0xF5 ? 4
                                                 : 0;
        if (length == 0 || length > text.size() || !std::ranges::all_of(text.substr(1, length - 1), isContinuation))
            return false;
        text.remove_prefix(length);
    }
    return true;
}

/// The file's bytes; a file that cannot be read is an error and gives nothing.
std::optional<std::string> readFile(const std::filesystem::path& path, Findings& findings)
{
    errno = 0;
    std::ifstream in(path, std::ios::binary);
    std::string text;
    std::array<char, 4096> block;
    while (in.read(block.data(), block.size()) || in.gcount() > 0) // the last, shorter block counts as a failed read
        text.append(block.data(), static_cast<std::size_t>(in.gcount()));
    if (!in.eof() || in.bad()) {
        findings.error(path.filename().string(), 0, std::string("cannot be read: ") + std::strerror(errno));
        return std::nullopt;
    }
    return text;
}

/// Reads one field; false when it is an error, which is then reported.
bool readField(const std::string& text, const char* column, double& value, const Place& place)
{
    const std::string named = std::string(column) + " \"" + text + "\"";
    const char* end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, value);
    if (text.empty())
        place.error(std::string(column) + " is empty");
    else if (failure == std::errc::invalid_argument || stop != end)
        place.error(named + " is not a number");
    else if (failure != std::errc() || !std::isfinite(value))
        place.error(named + " is not a finite number");
    else if (std::signbit(value))
        place.error(named + " is negative");
    else
        return true;
    return false;
}

bool readField(const std::string& text, const char* column, std::string& value, const Place& place)
{
    value = text;
    if (text.find_first_not_of(" \t\r\n") == std::string::npos)
        place.error(std::string(column) + " is empty");
    else if (!isUtf8(text))
        place.error(std::string(column) + " is not UTF-8 text");
    else
        return true;
    return false;
}

/// The column that each field of the header names, nullptr for one it should not have.
template <typename Row>
std::vector<const Column<Row>*> readHeader(const CsvRow& header, std::span<const Column<Row>> columns,
                                           const Place& place)
{
    std::vector<const Column<Row>*> order;
    for (const std::string& name : header.fields) {
        const auto column = std::ranges::find_if(columns, [&](const auto& one) { return name == one.name; });
        const bool known = column != columns.end();
        const bool doubled = known && std::ranges::find(order, &*column) != order.end();
        if (!known)
            place.error("unknown column \"" + name + "\"");
        else if (doubled)
            place.error("column " + name + " stands twice");
        order.push_back(known && !doubled ? &*column : nullptr);
    }
    for (const Column<Row>& column : columns)
        if (std::ranges::find(order, &column) == order.end())
            place.error(std::string("column ") + column.name + " is missing");
    return order;
}

void reportBrokenQuoting(const Place& place)
{
    place.error("broken quoting; a text with a quotation mark is written like \"1/2\"\"\"");
}

/// Reads one row's fields, whose columns are `order`, into `row`; false when there was anything to report.
template <typename Row>
bool readRow(const CsvRow& csv, const std::vector<const Column<Row>*>& order, Row& row, const Place& place)
{
    if (csv.fields.empty()) {
        reportBrokenQuoting(place);
        return false;
    }
    if (csv.fields.size() != order.size()) {
        place.error(shortest(csv.fields.size()) + " fields where the header has " + shortest(order.size()));
        return false;
    }
    bool good = true;
    row.line = csv.line;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (!order[i])
            continue;
        const auto read = [&](auto member) { return readField(csv.fields[i], order[i]->name, row.*member, place); };
        good = std::visit(read, order[i]->member) && good;
    }
    return good;
}

/// The readable rows of a table's file; everything else in it is an error.
template <typename Row>
std::vector<Row> readTable(const std::filesystem::path& path, std::span<const Column<Row>> columns, Findings& findings)
{
    const std::optional<std::string> text = readFile(path, findings);
    if (!text)
        return {};
    const std::string file = path.filename().string();
    const std::vector<CsvRow> csv = readCsv(*text);
    if (csv.empty()) {
        findings.error(file, 1, "the header row is missing");
        return {};
    }
    const Place header{file, csv.front().line, findings};
    if (csv.size() == 1)
        header.error("the table is empty");
    if (csv.front().fields.empty()) {
        reportBrokenQuoting(header);
        return {};
    }
    const int errorsBefore = findings.errors();
    const auto order = readHeader(csv.front(), columns, header);
    const bool headerGood = findings.errors() == errorsBefore;
    std::vector<Row> rows;
    for (const CsvRow& fields : std::span(csv).subspan(1)) {
        Row row;
        if (readRow(fields, order, row, {file, fields.line, findings}) && headerGood)
            rows.push_back(row);
    }
    return rows;
}

/// The rows of one Cv by pressure.
using Curve = std::map<double, const CapacityRow*>;

void checkCurve(const ValveTable& table, const std::string& file, float cv, const Curve& curve, Findings& findings)
{
    const CapacityRow& lowest = *curve.begin()->second;
    const CapacityRow& highest = *curve.rbegin()->second;
    const std::string units = " " + std::string(table.pressUnits);
    const auto warn = [&](const CapacityRow& row, const std::string& reason) {
        findings.warning(file, row.line, "Cv " + shortest(cv) + reason);
    };
    if (std::ranges::find(table.cvSeries, cv) == table.cvSeries.end())
        warn(lowest, " is outside the series of this valve type");
    if (lowest.pressure > table.lowest)
        warn(lowest, " begins at " + shortest(lowest.pressure) + units + ", above the lowest permitted pressure, " +
                         shortest(table.lowest) + units);
    if (highest.pressure < table.highest)
        warn(highest, " ends at " + shortest(highest.pressure) + units + ", below the highest permitted pressure, " +
                          shortest(table.highest) + units);
    const CapacityRow* before = &lowest;
    for (const auto& [pressure, row] : curve) {
        if (row->flow < before->flow)
            warn(*row, ": the flow falls from " + shortest(before->flow) + " at " + shortest(before->pressure) + units +
                           " to " + shortest(row->flow) + " at " + shortest(pressure) + units);
        before = row;
    }
}

/// Refuses a Cv whose capacity the program would not find. It holds the Cv it selected at single precision and looks
/// for the number that this single's text reads as: at most seven digits, no exponent. 0 means "no valve".
bool checkCv(double cv, const Place& place)
{
    const NumberText numbers;
    const float selected = cv > std::numeric_limits<float>::max() ? 0 : static_cast<float>(cv);
    if (selected > 0 && numbers.parse(numbers.general(selected)) == cv)
        return true;
    place.error("CV " + shortest(cv) + " cannot be looked up: it must be 0.0001 or more and have at most seven digits");
    return false;
}

void checkValveTable(const ValveTable& table, const std::vector<CapacityRow>& rows, Findings& findings)
{
    const std::string file = std::string(table.name) + ".csv";
    std::map<float, Curve> curves; // single precision, as a selected Cv is held
    for (const CapacityRow& row : rows) {
        if (!checkCv(row.cv, {file, row.line, findings}))
            continue;
        const auto [same, added] = curves[static_cast<float>(row.cv)].emplace(row.pressure, &row);
        if (!added)
            findings.error(file, row.line,
                           "Cv " + shortest(row.cv) + " at Pressure " + shortest(row.pressure) +
                               " is a duplicate of line " + shortest(same->second->line));
    }
    for (const auto& [cv, curve] : curves)
        checkCurve(table, file, cv, curve, findings);
    for (const float cv : table.cvSeries)
        if (!curves.contains(cv))
            findings.warning(file, 1, "Cv " + shortest(cv) + " of the series has no row");
}

void checkLargeTankTable(const LargeTankTable& table, const std::vector<LargeTankRow>& rows, Findings& findings)
{
    const std::string file = std::string(table.name) + ".csv";
    const std::string first = "TankVol " + shortest(rows.front().tankVol);
    const std::string last = "TankVol " + shortest(rows.back().tankVol);
    const std::string units = std::string(" ") + table.volUnits;
    if (rows.front().tankVol > table.lowest)
        findings.error(file, rows.front().line,
                       "the table starts above " + shortest(table.lowest) + units + ", at " + first);
    for (std::size_t i = 1; i < rows.size(); ++i)
        if (rows[i].tankVol <= rows[i - 1].tankVol)
            findings.error(file, rows[i].line,
                           "TankVol " + shortest(rows[i].tankVol) + " is not in ascending order, it follows " +
                               shortest(rows[i - 1].tankVol));
    if (rows.back().tankVol < table.highest)
        findings.error(file, rows.back().line,
                       "the table ends below " + shortest(table.highest) + units + ", at " + last);
}

} // namespace

void Findings::error(std::string_view file, std::size_t line, std::string_view reason)
{
    ++errorCount;
    write(file, line, "error", reason);
}

void Findings::warning(std::string_view file, std::size_t line, std::string_view reason)
{
    ++warningCount;
    write(file, line, "warning", reason);
}

void Findings::write(std::string_view file, std::size_t line, std::string_view kind, std::string_view reason)
{
    out << file;
    if (line > 0)
        out << ':' << line;
    out << ": " << kind << ": " << reason << '\n';
}

CapacityTables readCapacityTables(const std::filesystem::path& directory, Findings& findings)
{
    CapacityTables tables;
    const auto pathOf = [&](std::string_view table) { return directory / (std::string(table) + ".csv"); };
    for (const ValveTable& table : valveTables()) {
        auto& rows = tables.valves[std::string(table.name)];
        rows = readTable<CapacityRow>(pathOf(table.name), capacityColumns, findings);
        if (!rows.empty())
            checkValveTable(table, rows, findings);
    }
    for (const LargeTankTable& table : largeTankTables) {
        auto& rows = tables.largeTanks[table.name];
        rows = readTable<LargeTankRow>(pathOf(table.name), largeTankColumns, findings);
        if (!rows.empty())
            checkLargeTankTable(table, rows, findings);
    }
    return tables;
}

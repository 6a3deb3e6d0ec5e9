#include "tables/capacity_tables.h"

#include "base/offered.h"
#include "capacity/cv_series.h"
#include "engine/tank_limits.h"
#include "files/csv_reader.h"
#include "tables/findings.h"
#include "tables/table_reader.h"

#include <algorithm>
#include <charconv>
#include <cmath>

const std::array<LargeTankTableSpec, 2> largeTankTableSpecs{{
    // The factors of API Standard 2000, repeated from engine/required_flow.cpp: a slip there is not
    // repeated here.
    {"USLargeTank", choice::us, "gal", smallTankGallons, largestTankGallons, 1.0 / 42, 0.0143},
    {"MetriclargeTank", choice::metric, "m3", smallTankCubicMeters, largestTankCubicMeters, 0.169, 0.1},
}};

const Rule isNoNumber{Severity::error, "not a number", "correct it, or delete the row"};
const Rule tooManyRows{Severity::error, "a table too large for the program, which reads it at every click",
                       "leave out rows"};

namespace
{

constexpr Rule textUnplain{Severity::error, "a text that cannot be shown", "correct it"};

/// Whether nothing of a text would be seen.
bool isBlank(std::string_view text)
{
    constexpr std::string_view blanks[] = {" ",      "\t",     "\r",     "\n",     "\u00A0", "\u1680",
                                           "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005",
                                           "\u2006", "\u2007", "\u2008", "\u2009", "\u200A", "\u200B",
                                           "\u2028", "\u2029", "\u202F", "\u205F", "\u3000", "\uFEFF"};
    return without(blanks, text).empty();
}

std::string fieldText(double value, bool decimalComma)
{
    std::string text = numberText(value);
    const std::size_t point = text.find('.');
    if (!decimalComma || point == std::string::npos)
        return text;
    text[point] = ',';
    return text.size() - point == 4 ? text + '0' : text; // 1,245 alone might be a thousand and more
}

std::string fieldText(const std::string& text, bool decimalComma)
{
    return csvField(text, decimalComma ? ';' : ',');
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
                    std::string(column) + ' ' + (std::isfinite(value) ? messageText(numberText(value)) : "not finite"),
                    digitsOnly);
    return false;
}

const char* textFault(std::string_view text)
{
    if (isBlank(text))
        return "is empty";
    for (std::size_t at = 0; at < text.size(); ++at)
        if (controlLength(text.substr(at)) > 0)
            return "has a control character";
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
    const auto flowUnit = [](std::string_view unitSystem) { return unitSystem == choice::us ? "SCFH" : "Nm3/h"; };
    for (const ValveTableSpec& table : valveTableSpecs())
        tables.valves[std::string(table.name)] = readTable<CapacityRow>(
            pathOf(table.name), {table.pressUnits, flowUnit(table.unitSystem), table.valveType == choice::pad},
            findings);
    for (const LargeTankTableSpec& table : largeTankTableSpecs)
        tables.largeTanks[std::string(table.name)] =
            readTable<LargeTankRow>(pathOf(table.name), {table.volUnits, flowUnit(table.unitSystem), false}, findings);
    return tables;
}

template <typename Row>
std::string csvText(const Table<Row>& table, bool decimalComma)
{
    std::string text = decimalComma ? "\xEF\xBB\xBF" : "";
    const auto addLine = [&](const auto& fieldOf) {
        for (const Column<Row>& column : columnsOf<Row>())
            text += (&column == columnsOf<Row>().data() ? "" : decimalComma ? ";" : ",") + fieldOf(column);
        text += '\n';
    };
    addLine([](const Column<Row>& column) { return std::string(column.name); });
    for (const Row& row : table.rows)
        addLine([&](const Column<Row>& column) {
            return std::visit([&](auto member) { return fieldText(row.*member, decimalComma); }, column.member);
        });
    return text;
}

template std::string csvText(const Table<CapacityRow>&, bool);
template std::string csvText(const Table<LargeTankRow>&, bool);

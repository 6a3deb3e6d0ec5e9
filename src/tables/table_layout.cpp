#include "tables/table_layout.h"

#include "tables/flow_units.h"

#include <algorithm>
#include <charconv>

namespace
{

/// Words in column names that spreadsheets of many languages use, in small letters, and the columns
/// they likely mean.
struct Word
{
    std::string_view part;
    std::string_view column;
};
constexpr Word words[] = {
    {"druck", "Pressure"},  {"press", "Pressure"},   {"presi", "Pressure"},   {"druk", "Pressure"},
    {"tryck", "Pressure"},  {"tryk", "Pressure"},    {"ciśn", "Pressure"},    {"tlak", "Pressure"},
    {"nyomás", "Pressure"}, {"durchfl", "flow"},     {"strom", "flow"},       {"menge", "flow"},
    {"débit", "flow"},      {"debi", "flow"},        {"caudal", "flow"},      {"portata", "flow"},
    {"vaz", "flow"},        {"flow", "flow"},        {"flöde", "flow"},       {"kapaz", "flow"},
    {"capac", "flow"},      {"leistung", "flow"},    {"przep", "flow"},       {"průtok", "flow"},
    {"größe", "Bodysize"},  {"groesse", "Bodysize"}, {"gehäuse", "Bodysize"}, {"weite", "Bodysize"},
    {"size", "Bodysize"},   {"body", "Bodysize"},    {"anschlu", "Bodysize"}, {"taille", "Bodysize"},
    {"diam", "Bodysize"},   {"tama", "Bodysize"},    {"misura", "Bodysize"},  {"dimens", "Bodysize"},
    {"maat", "Bodysize"},   {"storl", "Bodysize"},   {"størr", "Bodysize"},   {"rozm", "Bodysize"},
    {"cv", "CV"},           {"vol", "TankVol"},      {"inhalt", "TankVol"},   {"hfp", "DepadHFP"},
    {"lfp", "DepadLFP"},    {"einatm", "Pad"},       {"inbreath", "Pad"},     {"in-breath", "Pad"},
    {"pad", "Pad"},
};

std::string inSmallLetters(std::string_view text)
{
    std::string small(trimmed(text));
    std::ranges::transform(small, small.begin(), lowerCase);
    return small;
}

std::size_t columnNamed(std::string_view name, std::span<const CsvColumn> columns)
{
    const auto found = std::ranges::find(columns, name, &CsvColumn::name);
    return found == columns.end() ? HeaderField::none : static_cast<std::size_t>(found - columns.begin());
}

std::size_t columnLike(std::string_view name, std::span<const CsvColumn> columns)
{
    const std::string small = inSmallLetters(name);
    for (const CsvColumn& column : columns)
        if (isAlike(column.name, name))
            return columnNamed(column.name, columns);
    for (const Word& word : words)
        if (small.find(word.part) != std::string::npos && columnNamed(word.column, columns) != HeaderField::none)
            return columnNamed(word.column, columns);
    return HeaderField::none;
}

/// Reads Cv and body size from a name like "Cv 0.2 1/2"" or "CV: 7,5 (1")". Gives whether it has
/// them.
bool readCv(std::string_view name, HeaderField& field)
{
    const auto skip = [&](std::string_view signs) {
        name.remove_prefix(std::min(name.find_first_not_of(signs), name.size()));
    };
    name = trimmed(name);
    if (name.size() < 3 || !isAlike(name.substr(0, 2), "cv"))
        return false;
    name.remove_prefix(2);
    skip(" =:");
    const std::string_view digits = name.substr(0, name.find_first_not_of("0123456789.,"));
    std::string number(digits.substr(0, digits.find_last_not_of(".,") + 1));
    std::ranges::replace(number, ',', '.');
    double cv = 0;
    const auto [stop, failure] = std::from_chars(number.data(), number.data() + number.size(), cv);
    if (number.empty() || failure != std::errc() || stop != number.data() + number.size())
        return false;
    field.cv = cv;
    name.remove_prefix(number.size());
    skip(" ,;:/(");
    field.bodySize = trimmed(name.substr(0, name.find(')')));
    return true;
}

HeaderField fieldOf(const std::string& text, std::span<const CsvColumn> columns)
{
    HeaderField field;
    field.text = text;
    if (columnNamed("CV", columns) != HeaderField::none && readCv(text, field)) {
        field.isExact = true;
        return field;
    }
    std::string_view name = trimmed(text);
    if (const std::size_t bracket = name.find_last_of("[(");
        bracket != std::string_view::npos && bracket > 0 && (name.ends_with(']') || name.ends_with(')'))) {
        field.unit = name.substr(bracket + 1, name.size() - bracket - 2);
        name = trimmed(name.substr(0, bracket));
    } else {
        name = text; // names are exact, blanks included
    }
    field.column = columnNamed(name, columns);
    field.isExact = field.column != HeaderField::none;
    if (!field.isExact)
        field.column = columnLike(name, columns);
    return field;
}

bool looksLikeUnits(const CsvRow& row, const TableLayout& layout, std::span<const CsvColumn> columns)
{
    bool hasUnit = false;
    for (std::size_t at = 0; at < std::min(row.fields.size(), layout.fields.size()); ++at)
        if (layout.fields[at].isNumber(columns)) {
            if (row.fields[at].find_first_of("0123456789") == 0)
                return false;
            hasUnit |= isUnit(row.fields[at]);
        }
    return hasUnit;
}

} // namespace

bool isNothing(std::string_view text)
{
    const std::string small = inSmallLetters(text);
    return small.empty() || small == "-" || small == "–" || small == "—" || small == "n/a" || small == "--";
}

std::size_t namesIn(const CsvRow& row, std::span<const CsvColumn> columns)
{
    std::size_t known = 0;
    for (const std::string& text : row.fields) {
        const HeaderField field = fieldOf(text, columns);
        known += field.isExact ? 3 : field.column != HeaderField::none ? 2 : 0; // similar: less
    }
    return known;
}

TableLayout findLayout(const std::vector<CsvRow>& rows, std::span<const CsvColumn> columns)
{
    constexpr std::size_t mostTitles = 10;
    TableLayout layout;
    std::size_t most = 3; // a title may name one column by chance
    for (std::size_t at = 0; at < std::min(rows.size(), mostTitles); ++at)
        if (const std::size_t known = namesIn(rows[at], columns); known > most) {
            most = known;
            layout.header = at;
        }
    for (const std::string& text : rows[layout.header].fields)
        layout.fields.push_back(fieldOf(text, columns));
    const auto byCv = std::ranges::count_if(layout.fields, [](const HeaderField& one) { return one.cv.has_value(); });
    layout.isByCv = byCv > 0;
    layout.hasUnitsRow = layout.header + 1 < rows.size() && looksLikeUnits(rows[layout.header + 1], layout, columns);
    return layout;
}

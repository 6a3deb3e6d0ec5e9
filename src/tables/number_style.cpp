#include "tables/number_style.h"

#include "files/csv_reader.h"

#include <algorithm>
#include <string_view>

namespace
{

constexpr std::string_view thousandsMarks[] = {" ", "'", "\u00A0", "\u202F", "\u2009", "\u2019"};

std::string without(std::string text, std::string_view mark)
{
    for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos;)
        text.erase(at, mark.size());
    return text;
}

/// Whether `mark` may separate thousands at every place where it is: "1.245" and "12,500,000", but
/// not "0.245" or "1234.567".
bool mayBeThousands(std::string_view text, char mark)
{
    const std::size_t first = text.find_first_not_of("+-");
    if (first == std::string_view::npos || text[first] == '0')
        return false;
    text.remove_prefix(first);
    std::size_t at = text.find(mark);
    if (at == 0 || at > 3)
        return false;
    for (; at != std::string_view::npos; at = text.find(mark, at + 1)) {
        const std::size_t next = text.find_first_not_of("0123456789", at + 1);
        if (std::min(next, text.size()) - at != 4)
            return false;
    }
    return true;
}

} // namespace

std::string NumberStyle::plain(const std::string& text) const
{
    if (fault.empty() && decimalMark == '.')
        return text;
    std::string number = text;
    if (!fault.empty()) {
        const char other = decimalMark == '.' ? ',' : '.';
        if (number.find(decimalMark) != std::string::npos || mayBeThousands(number, other))
            number = without(number, std::string_view(&other, 1));
        std::ranges::replace(number, other, '.');
        for (const std::string_view mark : thousandsMarks)
            number = without(number, mark);
    }
    std::ranges::replace(number, decimalMark, '.');
    return number;
}

NumberStyle findNumberStyle(const std::vector<NumberField>& numbers, char separator)
{
    struct Mark
    {
        const NumberField* first = nullptr;
        bool isDecimal = false;
    };
    Mark point;
    Mark comma;
    const NumberField* separated = nullptr; // has thousands separators
    char lastOfTwo = '\0';                  // the decimal mark of "1.234,5"
    for (const NumberField& field : numbers) {
        std::string text = field.text;
        for (const std::string_view mark : thousandsMarks)
            text = without(text, mark);
        if (text.empty() || text.find_first_not_of("0123456789.,+-eE") != std::string::npos)
            continue;
        if (text != field.text && !field.text.starts_with(' ') && !field.text.ends_with(' ') && separated == nullptr)
            separated = &field;
        const auto points = std::ranges::count(text, '.');
        const auto commas = std::ranges::count(text, ',');
        if (points > 0 && commas > 0)
            lastOfTwo = text.rfind('.') > text.rfind(',') ? '.' : ',';
        if ((points > 0 && commas > 0) || (points > 1 && mayBeThousands(text, '.')) ||
            (commas > 1 && mayBeThousands(text, ','))) {
            separated = separated == nullptr ? &field : separated;
            continue;
        }
        for (auto& [mark, seen] : {std::pair<char, Mark*>('.', &point), {',', &comma}})
            if (text.find(mark) != std::string::npos) {
                if (seen->first == nullptr)
                    seen->first = &field;
                seen->isDecimal |= (mark == '.' && separator == ',') || !mayBeThousands(text, mark);
            }
    }

    NumberStyle style;
    const bool commaLikelier = point.isDecimal != comma.isDecimal ? comma.isDecimal
                               : lastOfTwo != '\0'                ? lastOfTwo == ','
                                                                  : separator == ';' || point.first == nullptr;
    style.decimalMark =
        separator != ',' && commaLikelier && (comma.first != nullptr || separator == ';' || separated) ? ',' : '.';
    const auto refuse = [&](const NumberField& field, const std::string& why, const std::string& expected) {
        style.fault = why;
        style.expected = expected;
        style.line = field.line;
    };
    const std::string sample = style.decimalMark == ',' ? "1234,5" : "1234.5";
    if (separated != nullptr) {
        refuse(*separated, inQuotes(separated->text) + " has thousands separators", "numbers like " + sample);
    } else if (separator == ',' && comma.first != nullptr) {
        refuse(*comma.first, inQuotes(comma.first->text) + " in a file separated by commas",
               "a decimal point and no thousands separators");
    } else if (point.first != nullptr && comma.first != nullptr) {
        refuse(*std::max(point.first, comma.first),
               "two ways of writing, " + inQuotes(point.first->text) + " and " + inQuotes(comma.first->text),
               "numbers like " + sample);
    } else if (const Mark& only = point.first != nullptr ? point : comma; only.first != nullptr && !only.isDecimal) {
        refuse(*only.first,
               inQuotes(only.first->text) + " may have a decimal mark or a thousands separator, and no other number "
                                            "tells which",
               "no thousands separators, and one number with another count of decimals");
    }
    return style;
}

#include "base/number_text.h"

#include "base/locale_info.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace
{

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n';
}

std::string shortest(double value, int significantDigits)
{
    std::array<char, 32> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value == 0 ? 0.0 : value,
                                   std::chars_format::general, significantDigits)
                         .ptr;
    std::string text(buffer.data(), end);
    std::replace(text.begin(), text.end(), 'e', 'E');
    return text;
}

/// Adds one to a text of digits: "199" becomes "200", "" becomes "1".
void increment(std::string& digits)
{
    auto place = digits.rbegin();
    while (place != digits.rend() && *place == '9')
        *place++ = '0';
    if (place == digits.rend())
        digits.insert(digits.begin(), '1');
    else
        ++*place;
}

/// `value` to 15 significant digits, then to two decimals, halves away from zero: "-1234.50", always with ".".
std::string roundedToHundredths(double value)
{
    std::array<char, 32> buffer; // d.dddddddddddddde+xxx
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value), std::chars_format::scientific, 14)
            .ptr;
    const auto e = std::find(buffer.data(), end, 'e');
    int exponent = 0;
    std::from_chars(e[1] == '+' ? e + 2 : e + 1, end, exponent);
    std::string digits(buffer.data(), e);
    digits.erase(1, 1); // the point

    const int kept = exponent + 3; // digits up to the hundredths
    if (kept < 0)
        return "0.00";
    const auto keptDigits = static_cast<std::size_t>(kept);
    const bool up = keptDigits < digits.size() && digits[keptDigits] >= '5';
    digits.resize(keptDigits, '0');
    if (up)
        increment(digits);
    if (digits.size() < 3)
        digits.insert(0, 3 - digits.size(), '0');
    if (value < 0 && digits.find_first_not_of('0') != std::string::npos)
        digits.insert(0, 1, '-');
    return digits.insert(digits.size() - 2, 1, '.');
}

/// A plain decimal text ("12.5", ".5", "12.") as a double; too large is the largest double, too small is 0, and so is
/// an exponent ("1e999") that leads beyond a double.
double decimalValue(std::string_view plain)
{
    double value = 0;
    const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    if (result.ec != std::errc::result_out_of_range)
        return value;
    const bool large = plain.find('e') == std::string_view::npos &&
                       plain.substr(0, plain.find('.')).find_first_of("123456789") != std::string_view::npos;
    return large ? std::numeric_limits<double>::max() : 0;
}

double digitsInBase(std::string_view text, int base)
{
    double value = 0;
    for (const char* at = text.data(); at != text.data() + text.size(); ++at) {
        int digit = base;
        std::from_chars(at, at + 1, digit, base);
        if (digit == base)
            break;
        value = value * base + digit;
    }
    return value;
}

/// Length of the longest start of `text` that reads as digits, at most one point, and an exponent.
std::size_t numberLength(std::string_view text)
{
    std::size_t at = 0;
    const auto digits = [&] {
        const std::size_t from = at;
        while (at < text.size() && isDigit(text[at]))
            ++at;
        return at - from;
    };
    std::size_t mantissaDigits = digits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        mantissaDigits += digits();
    }
    if (mantissaDigits == 0)
        return 0;
    const std::size_t mantissa = at;
    if (at < text.size() && text[at] == 'e') {
        ++at;
        if (at < text.size() && (text[at] == '+' || text[at] == '-'))
            ++at;
        if (digits() > 0)
            return at;
    }
    return mantissa;
}

} // namespace

std::string NumberText::localized(std::string text) const
{
    if (const auto point = text.find('.'); point != std::string::npos)
        text.replace(point, 1, signs_.decimal);
    return text;
}

std::string NumberText::general(double value) const
{
    return localized(shortest(value, 15));
}

std::string NumberText::general(float value) const
{
    return localized(shortest(static_cast<double>(value), 7));
}

std::string NumberText::standard(double value) const
{
    std::string text = roundedToHundredths(value);
    const std::size_t firstDigit = text[0] == '-' ? 1 : 0;
    std::size_t groupEnd = text.size() - 3;
    text = localized(std::move(text));

    std::size_t size = 0;
    for (std::size_t at = 0; at < signs_.grouping.size(); at += 2) {
        const std::size_t next = static_cast<std::size_t>(signs_.grouping[at] - '0');
        const bool repeat = next == 0;
        size = repeat ? size : next;
        while (size > 0 && groupEnd > firstDigit + size) {
            groupEnd -= size;
            text.insert(groupEnd, signs_.thousands);
            if (!repeat)
                break;
        }
    }
    return text;
}

double NumberText::standardValue(double value)
{
    const std::string text = roundedToHundredths(value);
    return text[0] == '-' ? -decimalValue(std::string_view(text).substr(1)) : decimalValue(text);
}

std::size_t NumberText::decimalLength(std::string_view text) const
{
    for (const std::string* separator : {&signs_.decimal, &signs_.moneyDecimal})
        if (!separator->empty() && text.starts_with(*separator))
            return separator->size();
    return 0;
}

std::optional<double> NumberText::parse(std::string_view text) const
{
    text = trimmed(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);

    std::string plain;
    bool hasPoint = false;
    bool hasDigit = false;
    while (!text.empty()) {
        std::size_t length = 1;
        if (isDigit(text.front())) {
            hasDigit = true;
            plain += text.front();
        } else if (length = decimalLength(text); length > 0 && !hasPoint) {
            hasPoint = true;
            plain += '.';
        } else {
            return std::nullopt;
        }
        text.remove_prefix(length);
    }
    if (!hasDigit)
        return std::nullopt;
    return negative ? -decimalValue(plain) : decimalValue(plain);
}

double NumberText::leading(std::string_view text) const
{
    text = trimmed(text);
    std::string plain; // without blanks, "." as the point
    while (!text.empty()) {
        const std::size_t separator = decimalLength(text);
        const char c = separator > 0 ? '.' : text.front();
        if (!isBlank(c))
            plain += c;
        text.remove_prefix(std::max<std::size_t>(separator, 1));
    }

    std::string_view rest = plain;
    const bool negative = rest.starts_with('-');
    if (negative || rest.starts_with('+'))
        rest.remove_prefix(1);
    const double sign = negative ? -1 : 1;
    if (rest.starts_with("&H") || rest.starts_with("&h"))
        return sign * digitsInBase(rest.substr(2), 16);
    if (rest.starts_with("&O") || rest.starts_with("&o"))
        return sign * digitsInBase(rest.substr(2), 8);
    std::string decimal(rest);
    for (char& c : decimal)
        if (c == 'E' || c == 'D' || c == 'd')
            c = 'e'; // before an exponent
    return sign * decimalValue(std::string_view(decimal).substr(0, numberLength(decimal)));
}

std::string localeText(const LocaleInfo& locale, LocaleItem item)
{
    const std::uint32_t language = locale.GetUserDefaultLCID() & 0xFFFF; // the language identifier alone
    const int length = std::max(locale.GetLocaleInfoA(language, item, nullptr, 0), 0);
    std::string text(static_cast<std::size_t>(length), '\0');
    locale.GetLocaleInfoA(language, item, text.data(), length);
    return text.substr(0, text.find('\0'));
}

NumberText userNumberText(const LocaleInfo& locale, const std::string& moneyDecimal)
{
    NumberText::Signs signs;
    if (const std::string decimal = localeText(locale, LocaleItem::numberDecimal); !decimal.empty())
        signs.decimal = decimal;
    signs.thousands = localeText(locale, LocaleItem::numberThousands);
    signs.grouping = localeText(locale, LocaleItem::numberGrouping);
    signs.moneyDecimal = moneyDecimal;
    return NumberText(signs);
}

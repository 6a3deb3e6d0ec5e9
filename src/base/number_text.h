#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

class LocaleInfo;
enum class LocaleItem : std::uint32_t;

/// Numbers as text and back in the user's locale. Texts are UTF-8; a separator may have several bytes.
class NumberText
{
public:
    /// The separators of a locale. The defaults are those of plain "C" with thousands separators.
    struct Signs
    {
        std::string decimal = ".";
        std::string thousands = ",";
        std::string grouping = "3;0"; ///< group sizes from the right; a closing 0 repeats the last one
        std::string moneyDecimal;     ///< what the key filter lets be typed; read like `decimal`
    };

    NumberText() = default;
    explicit NumberText(Signs signs) : signs_(std::move(signs)) {}

    /// Shortest text of at most 15 (double) or 7 (single) significant digits, no thousands separators; exponent form
    /// below 0.0001 and from 1E+15 (double) or 1E+07 (single).
    std::string general(double value) const;
    std::string general(float value) const;

    /// The "Standard" format: thousands separators and two decimals. The decimal text of 15 significant digits is what
    /// is rounded, halves away from zero, so 0.985 gives 0.99 although the nearest double lies below it. Finite only.
    std::string standard(double value) const;

    /// The number that `standard` shows.
    static double standardValue(double value);

    /// Reads a whole text as a number: blanks around it (no-break, narrow and of no width, too), one sign, digits, at
    /// most one decimal separator (the number's or the money's). No thousands separators and no exponent: a wrong
    /// separator must not change a figure silently. Beyond the range of a double it is the largest double. nullopt when
    /// the text is not a number.
    std::optional<double> parse(std::string_view text) const;

    /// Reads the number a text begins with, 0 if it begins with none: blanks are skipped, the decimal point is "." or
    /// a separator of the user's, then an exponent (E or D); &H and &O begin hexadecimal and octal digits. Never fails.
    double leading(std::string_view text) const;

private:
    std::string localized(std::string text) const;

    /// Length of the user's decimal separator that `text` begins with, 0 if it begins with none.
    std::size_t decimalLength(std::string_view text) const;

    Signs signs_;
};

/// The number texts of the user's locale as it is now. `moneyDecimal` is the separator that may be typed.
NumberText userNumberText(const LocaleInfo& locale, const std::string& moneyDecimal);

/// The text of one locale item, cut before its first NUL; empty when the query fails.
std::string localeText(const LocaleInfo& locale, LocaleItem item);

#include "base/number_text.h"

#include "support/cases.h"
#include "support/given_locale.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

const std::map<std::string, NumberText> locales = {
    {"point", NumberText()},
    {"comma", NumberText({",", ".", "3;0", ","})},
    {"Indian", NumberText({".", ",", "3;2;0", "."})},
    {"mixed", NumberText({".", ",", "3;0", ","})},                 // numbers with a point, money with a comma
    {"Arabic", NumberText({"\u066b", "\u066c", "3;0", "\u066b"})}, // separators of two bytes
    {"without groups", NumberText({".", "", "", "."})},
};

std::string outcome(const Case& row)
{
    const NumberText& numbers = locales.at(row["Locale"]);
    const std::string& input = row["Input"];
    if (row["Case"] == "reads") {
        const auto value = numbers.parse(input);
        return value ? NumberText().general(*value) : "no number";
    }
    if (row["Case"] == "begins with")
        return NumberText().general(numbers.leading(input));
    const double value = std::stod(input);
    return row["Case"] == "shows as standard" ? numbers.standard(value)
           : row["Case"] == "shows a single"  ? numbers.general(static_cast<float>(value))
                                              : numbers.general(value);
}

TEST(NumberText, ReadsAndShowsAsTheCaseFileSays)
{
    EXPECT_EQ(NumberText().parse("100\r\n"), 100) << "pasted from a file of Windows's";
    for (const char* const blanks : {"\u00a0", "\u202f", "\u2009", "\u200b", "\ufeff", " \u00a0\u2060"}) {
        EXPECT_EQ(NumberText().parse(blanks + std::string("60") + blanks), 60) << "pasted from a web page";
        EXPECT_EQ(NumberText().leading(blanks + std::string("60")), 60);
        EXPECT_FALSE(NumberText().parse(std::string("1") + blanks + "000"));
        EXPECT_FALSE(NumberText().parse(blanks));
    }
    for (const Case& row : readCases("numbers.csv"))
        EXPECT_EQ(outcome(row), row["Output"]) << row.where() << " " << row["Input"];
}

TEST(NumberText, TakesEachSignFromItsOwnItemOfTheLocale)
{
    GivenLocale locale;
    locale.items = {{LocaleItem::numberDecimal, "d"},
                    {LocaleItem::numberThousands, "t"},
                    {LocaleItem::numberGrouping, "2;0"},
                    {LocaleItem::moneyDecimal, "x"}};
    const NumberText numbers = userNumberText(locale, "m");
    EXPECT_EQ(numbers.standard(12345), "1t23t45d00");
    EXPECT_EQ(numbers.parse("1m5"), 1.5);
    EXPECT_EQ(userNumberText(GivenLocale(), "").general(1.5), "1.5") << "where the locale cannot be asked";
}

TEST(NumberText, TheGasFactorHasTwoDecimalsInEveryLocale)
{
    EXPECT_DOUBLE_EQ(NumberText::standardValue(0.985 / std::sqrt(0.97)), 1.0);
    EXPECT_DOUBLE_EQ(NumberText::standardValue(9850.004), 9850.0); // thousands separators do not get in the way
}

} // namespace

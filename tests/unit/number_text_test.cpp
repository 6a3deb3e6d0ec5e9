#include "base/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

const NumberText points;
const NumberText commas({",", ".", "3;0", ","});
const NumberText indian({".", ",", "3;2;0", "."});
const NumberText mixed({".", ",", "3;0", ","});                 // numbers with a point, money with a comma
const NumberText arabic({"\u066b", "\u066c", "3;0", "\u066b"}); // separators of two bytes

TEST(NumberText, GeneralIsTheShortestText)
{
    struct Case
    {
        double value;
        const char* text;
    };
    for (const Case& c : {Case{2.5, "2.5"},
                          {12.0, "12"},
                          {0, "0"},
                          {-0.0, "0"},
                          {0.1 + 0.2, "0.3"},
                          {1e5, "100000"},
                          {static_cast<double>(12098.1F), "12098.099609375"},
                          {static_cast<double>(1259.7F), "1259.69995117188"},
                          {1.0 / 3, "0.333333333333333"},
                          {1234567890123456.0, "1.23456789012346E+15"},
                          {0.00001, "1E-05"}})
        EXPECT_EQ(points.general(c.value), c.text);
    EXPECT_EQ(points.general(0.97F), "0.97");
    EXPECT_EQ(points.general(7.5F), "7.5");
    EXPECT_EQ(commas.general(7.5F), "7,5");
    EXPECT_EQ(arabic.general(0.5), "0\u066b5");
}

TEST(NumberText, StandardRoundsTheDecimalTextHalfAwayFromZero)
{
    struct Case
    {
        double value;
        const char* text;
    };
    // 0.985, 1.005 and 2.675 lie just below as doubles; their decimal text is a half.
    for (const Case& c : {Case{0.985, "0.99"},
                          {1.005, "1.01"},
                          {2.675, "2.68"},
                          {1, "1.00"},
                          {0.97, "0.97"},
                          {0.994999, "0.99"},
                          {0.004, "0.00"},
                          {0.005, "0.01"},
                          {0.00499999, "0.00"},
                          {9.995, "10.00"},
                          {999.995, "1,000.00"},
                          {1234567.891, "1,234,567.89"},
                          {-1234.5, "-1,234.50"},
                          {-0.001, "0.00"},
                          {1e15, "1,000,000,000,000,000.00"},
                          {5e-324, "0.00"}})
        EXPECT_EQ(points.standard(c.value), c.text) << c.value;
    EXPECT_EQ(commas.standard(1234.5), "1.234,50");
    EXPECT_EQ(indian.standard(12345678), "1,23,45,678.00");
    EXPECT_EQ(NumberText({".", "", "", "."}).standard(1234), "1234.00");
    EXPECT_DOUBLE_EQ(NumberText::standardValue(0.985 / std::sqrt(0.97)), 1.0);
    EXPECT_DOUBLE_EQ(NumberText::standardValue(9850.004), 9850.0); // thousands separators do not get in the way
}

TEST(NumberText, ReadsNumbersOfTheUsersLocaleOnly)
{
    const double largest = std::numeric_limits<double>::max();
    struct Case
    {
        const NumberText& numbers;
        std::string text;
        std::optional<double> value;
    };
    const std::string digits400(400, '9');
    for (const Case& c : {Case{points, "12.5", 12.5},
                          {points, ".5", 0.5},
                          {points, "5.", 5.0},
                          {points, " \t-3 ", -3.0},
                          {points, "+4", 4.0},
                          {points, "", {}},
                          {points, ".", {}},
                          {points, "-", {}},
                          {points, "1.2.3", {}},
                          {points, "1 2", {}},
                          {points, "1e3", {}},
                          {points, "12,5", {}},
                          {points, "1,234", {}},
                          {points, "abc", {}},
                          {commas, "12,5", 12.5},
                          {commas, "12.5", {}},
                          {commas, "1.234", {}},
                          {commas, ",", {}},
                          {mixed, "12,5", 12.5},
                          {mixed, "12.5", 12.5},
                          {mixed, "1,2.3", {}},
                          {arabic, "1\u066b5", 1.5},
                          {points, digits400, largest},
                          {points, "0." + std::string(400, '0') + "1", 0.0},
                          {points, std::string(400, '0') + "7", 7.0},
                          {points, "-" + digits400, -largest}})
        EXPECT_EQ(c.numbers.parse(c.text), c.value) << c.text;
}

TEST(NumberText, ReadsTheNumberATextBeginsWith)
{
    struct Case
    {
        const NumberText& numbers;
        const char* text;
        double value;
    };
    for (const Case& c : {Case{points, "1.52", 1.52},
                          {points, "1.", 1},
                          {points, ".6", 0.6},
                          {points, "", 0},
                          {points, "x1", 0},
                          {points, " 1 5 . 2", 15.2},
                          {points, "1.5.2", 1.5},
                          {points, "97E-2kg", 0.97},
                          {points, "97d-2", 0.97},
                          {points, "1e", 1},
                          {points, "-2", -2},
                          {points, "&H1F", 31},
                          {points, "&O17", 15},
                          {points, "&", 0},
                          {points, "1,52", 1},
                          {commas, "1,52", 1.52},
                          {commas, "1.52", 1.52},
                          {points, "1e999", 0},
                          {points, ".", 0}})
        EXPECT_DOUBLE_EQ(c.numbers.leading(c.text), c.value) << c.text;
}

} // namespace

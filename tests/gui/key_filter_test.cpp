#include "app/key_filter.h"

#include "app/sizing_state.h"
#include "support/given_locale.h"

#include <gtest/gtest.h>

namespace
{

TEST(KeyFilter, SeparatorIsThatOfMoneyAndFailsToNothing)
{
    struct Case
    {
        std::map<LocaleItem, std::string> items;
        const char* decSep;
    };
    for (const Case& c : {Case{{{LocaleItem::moneyDecimal, ","}, {LocaleItem::numberDecimal, "."}}, ","},
                          {{{LocaleItem::moneyDecimal, std::string(".\0x", 3)}}, "."},
                          {{{LocaleItem::numberDecimal, "."}}, ""}}) {
        GivenLocale locale;
        locale.items = c.items;
        SizingState state;
        modDecSep(state, locale);
        EXPECT_EQ(state.DecSep, c.decSep);
    }
}

TEST(KeyFilter, AcceptsTheAllowedCharactersAndBackspace)
{
    struct Case
    {
        int code;
        const char* allowed;
        bool passes;
    };
    for (const Case& c : {Case{'0', "1234567890.", true},
                          {'9', "1234567890.", true},
                          {'.', "1234567890.", true},
                          {8, "1", true},
                          {',', "1234567890.", false},
                          {'.', "1234567890,", false},
                          {'-', "1234567890.", false},
                          {' ', "1", false},
                          {22, "1234567890.", false},
                          {3, "1", false},
                          {0, "1", false},
                          {-1, "1", false},
                          {'A', "abc", true},
                          {'a', "ABC", true},
                          {0x0661, "1234567890.", false},
                          {0x066b, "1234567890\u066b", true},
                          {0xab, "\u066b", false},
                          {'.', "1234567890", false}}) {
        int beeps = 0;
        const auto code = static_cast<std::int16_t>(c.code);
        EXPECT_EQ(modValidate(code, c.allowed, [&] { ++beeps; }), c.passes ? code : 0) << c.code;
        EXPECT_EQ(beeps, c.passes ? 0 : 1) << c.code;
    }
}

} // namespace

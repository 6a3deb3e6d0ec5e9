#include "app/key_filter.h"

#include "app/sizing_state.h"
#include "base/number_text.h"
#include "support/given_locale.h"

#include <gtest/gtest.h>

TEST(KeyFilter, SeparatorIsThatOfMoneyAndFailsToNothing)
{
    using Items = std::map<LocaleItem, std::string>;
    for (const auto& [items, decSep] :
         {std::pair<Items, const char*>{{{LocaleItem::moneyDecimal, ","}, {LocaleItem::numberDecimal, "."}}, ","},
          {{{LocaleItem::moneyDecimal, std::string(".\0x", 3)}}, "."},
          {{{LocaleItem::numberDecimal, "."}}, ""}}) {
        GivenLocale locale;
        locale.items = items;
        SizingState state;
        modDecSep(state, locale);
        EXPECT_EQ(state.DecSep, decSep);
    }
}

TEST(KeyFilter, AcceptsTheAllowedCharactersAndBackspace)
{
    using Codes = std::vector<int>;
    using Row = std::tuple<const char*, Codes, Codes>;
    for (const auto& [allowed, passing, rejected] :
         {Row{"1234567890.", {'0', '9', '.', 8}, {',', '-', ' ', 3, 22, 0, -1, 0x0661}},
          Row{"1234567890,", {','}, {'.'}}, Row{"1234567890", {'0', 8}, {'.', ','}}, Row{"aBc", {'A', 'b', 'C'}, {'d'}},
          Row{"1234567890\u066b", {0x066b}, {0xab, '.'}}}) {
        int beeps = 0;
        const auto filtered = [&, &text = allowed](int code) {
            return modValidate(static_cast<std::int16_t>(code), text, [&] { ++beeps; });
        };
        for (const int code : passing)
            EXPECT_EQ(filtered(code), code) << allowed;
        EXPECT_EQ(beeps, 0);
        for (const int code : rejected)
            EXPECT_EQ(filtered(code), 0) << allowed << code;
        EXPECT_EQ(beeps, static_cast<int>(rejected.size()));
    }
}

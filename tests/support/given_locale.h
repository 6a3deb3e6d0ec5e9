#pragma once

#include "base/locale_info.h"

#include <algorithm>
#include <map>
#include <string>

/// A locale whose items are given; an item left out cannot be asked.
struct GivenLocale : LocaleInfo
{
    std::map<LocaleItem, std::string> items;

    GivenLocale() = default;

    /// A locale with one decimal separator for numbers and money.
    explicit GivenLocale(const std::string& decimal)
        : items{{LocaleItem::numberDecimal, decimal}, {LocaleItem::moneyDecimal, decimal}}
    {
    }

    std::uint32_t GetUserDefaultLCID() const override { return 0x10407; } // a sorting bit above the language

    int GetLocaleInfoA(std::uint32_t locale, LocaleItem item, char* buffer, int length) const override
    {
        const auto found = items.find(item);
        if (locale != 0x0407 || found == items.end())
            return 0;
        const int needed = static_cast<int>(found->second.size()) + 1;
        if (length >= needed)
            std::copy_n(found->second.c_str(), needed, buffer);
        return needed;
    }
};

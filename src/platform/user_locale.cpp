#include "platform/user_locale.h"

#include "base/number_text.h"

#include <QDate>
#include <QLocale>

#ifdef _WIN32

#include <windows.h>

namespace
{

class SystemLocale : public LocaleInfo
{
public:
    std::uint32_t GetUserDefaultLCID() const override { return ::GetUserDefaultLCID(); }

    // In the process's code page instead of the locale's own: the program's manifest makes that UTF-8.
    int GetLocaleInfoA(std::uint32_t locale, LocaleItem item, char* buffer, int length) const override
    {
        return ::GetLocaleInfoA(locale, static_cast<LCTYPE>(item) | LOCALE_USE_CP_ACP, buffer, length);
    }
};

} // namespace

#else

#include <algorithm>
#include <climits>
#include <locale.h>
#include <string>

namespace
{

constexpr std::uint32_t userDefaultLcid = 0x0400; // LOCALE_USER_DEFAULT, the only locale known here

/// The user's locale from the environment as the calling thread's locale, for the life of the object. A category whose
/// locale is not installed is that of "C", as for any program.
class UserLocaleScope
{
public:
    UserLocaleScope()
    {
        for (const int category : {LC_CTYPE_MASK, LC_NUMERIC_MASK, LC_MONETARY_MASK})
            if (const locale_t with = newlocale(category, "", locale_))
                locale_ = with;
        previous_ = uselocale(locale_);
    }
    ~UserLocaleScope()
    {
        uselocale(previous_);
        freelocale(locale_);
    }
    UserLocaleScope(const UserLocaleScope&) = delete;
    UserLocaleScope& operator=(const UserLocaleScope&) = delete;

private:
    locale_t locale_ = newlocale(LC_ALL_MASK, "C", nullptr);
    locale_t previous_ = nullptr;
};

/// C's grouping bytes ("\3" or "\3\2": the last size repeats, CHAR_MAX ends grouping) in the form "3;2;0".
std::string groupingText(const char* sizes)
{
    std::string text;
    for (; *sizes != '\0'; ++sizes) {
        if (*sizes == CHAR_MAX) {
            if (!text.empty())
                text.pop_back();
            return text;
        }
        text += static_cast<char>('0' + *sizes); // always one digit
        text += ';';
    }
    return text.empty() ? text : text + '0';
}

class SystemLocale : public LocaleInfo
{
public:
    std::uint32_t GetUserDefaultLCID() const override { return userDefaultLcid; }

    int GetLocaleInfoA(std::uint32_t locale, LocaleItem item, char* buffer, int length) const override
    {
        if (locale != userDefaultLcid)
            return 0;
        const std::string text = itemText(item);
        const int needed = static_cast<int>(text.size()) + 1;
        if (length == 0)
            return needed;
        if (length < needed)
            return 0;
        std::copy_n(text.c_str(), needed, buffer);
        return needed;
    }

private:
    static std::string itemText(LocaleItem item)
    {
        const UserLocaleScope scope;
        const lconv* const conventions = localeconv();
        switch (item) {
            case LocaleItem::numberThousands:
                return conventions->thousands_sep;
            case LocaleItem::numberGrouping:
                return groupingText(conventions->grouping);
            case LocaleItem::moneyDecimal:
                // "C" and "POSIX" set none for money; numbers are then the nearest answer.
                if (*conventions->mon_decimal_point != '\0')
                    return conventions->mon_decimal_point;
                [[fallthrough]];
            case LocaleItem::numberDecimal:
                return conventions->decimal_point;
        }
        return {};
    }
};

} // namespace

#endif

const LocaleInfo& userLocale()
{
    static const SystemLocale locale;
    return locale;
}

std::string userToday()
{
    return QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat).toStdString();
}

std::string userLocaleName()
{
    return QLocale::system().name().toStdString();
}

bool hasDecimalComma()
{
    return localeText(userLocale(), LocaleItem::numberDecimal) == ",";
}

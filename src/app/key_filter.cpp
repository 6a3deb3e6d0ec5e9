#include "app/key_filter.h"

#include "app/sizing_state.h"
#include "base/locale_info.h"
#include "base/number_text.h"

namespace
{

std::string upperCase(std::string text)
{
    for (char& c : text)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return text;
}

/// UTF-8 of a character code; empty for a code that is none.
std::string character(std::int16_t code)
{
    const auto low = [code] { return static_cast<char>(0x80 | (code & 0x3F)); };
    if (code <= 0)
        return {};
    if (code < 0x80)
        return {static_cast<char>(code)};
    if (code < 0x800)
        return {static_cast<char>(0xC0 | (code >> 6)), low()};
    return {static_cast<char>(0xE0 | (code >> 12)), static_cast<char>(0x80 | ((code >> 6) & 0x3F)), low()};
}

} // namespace

void modDecSep(SizingState& state, const LocaleInfo& locale)
{
    state.DecSep = localeText(locale, LocaleItem::moneyDecimal);
}

std::int16_t modValidate(std::int16_t KeyAscii, const std::string& Allowed, const std::function<void()>& beep)
{
    const std::string accepted = upperCase(Allowed) + '\b';
    const std::string typed = upperCase(character(KeyAscii));
    if (!typed.empty() && accepted.find(typed) != std::string::npos)
        return KeyAscii;
    beep();
    return 0;
}

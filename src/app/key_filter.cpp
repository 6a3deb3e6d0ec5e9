#include "app/key_filter.h"

#include "app/sizing_state.h"
#include "base/locale_info.h"
#include "base/number_text.h"
#include "base/text.h"

#include <algorithm>

namespace
{

std::string inCapitals(std::string text)
{
    std::ranges::transform(text, text.begin(), upperCase);
    return text;
}

} // namespace

void modDecSep(SizingState& state, const LocaleInfo& locale)
{
    state.DecSep = localeText(locale, LocaleItem::moneyDecimal);
}

std::int16_t modValidate(std::int16_t KeyAscii, const std::string& Allowed, const std::function<void()>& beep)
{
    const std::string accepted = inCapitals(Allowed) + '\b';
    const std::string typed = inCapitals(KeyAscii > 0 ? utf8Of(static_cast<char32_t>(KeyAscii)) : "");
    if (!typed.empty() && accepted.find(typed) != std::string::npos)
        return KeyAscii;
    beep();
    return 0;
}

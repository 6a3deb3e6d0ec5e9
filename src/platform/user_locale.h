#pragma once

#include "base/locale_info.h"

#include <string>

/// The user's own locale, read afresh at every call: kernel32 on Windows, LC_NUMERIC and LC_MONETARY elsewhere.
const LocaleInfo& userLocale();

/// Today's date in the user's short form.
std::string userToday();

/// "de_DE", as reports name it.
std::string userLocaleName();

/// Whether the user's numbers have a decimal comma.
bool hasDecimalComma();

#pragma once

#include <cstdint>
#include <functional>
#include <string>

class LocaleInfo;
struct SizingState;

/// Reads the decimal separator that the user's locale sets for money amounts into `DecSep`; empty when the locale
/// cannot be asked.
void modDecSep(SizingState& state, const LocaleInfo& locale);

/// The key filter of the numeric boxes: returns `KeyAscii` when that character is one of `Allowed` (upper and lower
/// case alike) or backspace, else beeps and returns 0. Codes above 255 are Unicode characters; they pass only where
/// the locale's own separator is such a character.
std::int16_t modValidate(std::int16_t KeyAscii, const std::string& Allowed, const std::function<void()>& beep);

#pragma once

#include <cstdint>

/// The locale items this program asks for; the numbers are those of kernel32 (winnls.h).
enum class LocaleItem : std::uint32_t
{
    numberDecimal = 14,   ///< LOCALE_SDECIMAL
    numberThousands = 15, ///< LOCALE_STHOUSAND
    numberGrouping = 16,  ///< LOCALE_SGROUPING: group sizes from the right, "3;0"; a closing 0 repeats the last one
    moneyDecimal = 22     ///< LOCALE_SMONDECIMALSEP
};

/// The two locale calls of kernel32, by their own names. Handed in, so that nothing is read before `main` or kept.
class LocaleInfo
{
public:
    virtual ~LocaleInfo() = default;
    virtual std::uint32_t GetUserDefaultLCID() const = 0;

    /// Copies the item's text with its closing NUL (UTF-8) into `buffer` and returns the length with the NUL; with
    /// `length` 0 only returns the length needed. 0 on failure: unknown locale or item, buffer too short.
    virtual int GetLocaleInfoA(std::uint32_t locale, LocaleItem item, char* buffer, int length) const = 0;
};

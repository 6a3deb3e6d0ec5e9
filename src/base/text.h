#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

// Texts in UTF-8, and the letters of ASCII. What the C library takes for letters, and for small or capital ones, goes
// by the locale: Turkish has another small letter for I.

constexpr char lowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr char upperCase(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Whether two texts differ in nothing but upper and lower case of the letters A to Z.
constexpr bool equalsInAnyCase(std::string_view one, std::string_view other)
{
    return std::ranges::equal(one, other, {}, lowerCase, lowerCase);
}

/// Whether every byte of `text` has its place in a UTF-8 sequence. Text in a one-byte encoding rarely passes.
bool isUtf8(std::string_view text);

/// As many of the first `most` bytes as end between two characters.
std::string_view firstBytes(std::string_view text, std::size_t most);

/// The bytes of the first character; 0 for an empty text.
std::size_t firstLength(std::string_view text);

/// The bytes of the control character that `text` begins with, U+0080 to U+009F included; 0 for any other.
std::size_t controlLength(std::string_view text);

/// A character of at most 16 bits in UTF-8.
std::string utf8Of(char32_t character);

/// A text without the `blanks` around it.
std::string_view without(std::span<const std::string_view> blanks, std::string_view text);

/// A text without the blanks around it: tabs, line ends, no-break blanks, narrow ones and those of no width, too.
std::string_view trimmed(std::string_view text);

/// Whether two names differ in nothing but upper and lower case of the letters A to Z and what `trimmed` cuts off.
bool isAlike(std::string_view one, std::string_view other);

/// A text as messages cite it.
std::string inQuotes(const std::string& text);

/// A text in quotation marks as CSV and SQL write it: those in it are doubled.
std::string inDoubledQuotes(std::string_view text);

#include "report/file_name.h"

#include <algorithm>

namespace
{

constexpr std::size_t longestName = 100; // bytes: room for a number and the ending on every system

// What the C library takes for letters, and for their capitals, goes by the locale.
bool isLetterOrDigit(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

char upperCase(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Names of devices on Windows, whatever ending they have.
bool isDevice(std::string name)
{
    std::ranges::transform(name, name.begin(), upperCase);
    name = name.substr(0, name.find('.'));
    const bool isNumbered = name.size() == 4 && (name.starts_with("COM") || name.starts_with("LPT"));
    return name == "CON" || name == "PRN" || name == "AUX" || name == "NUL" || isNumbered;
}

} // namespace

std::string fileNameOf(std::string_view tagNumber)
{
    std::string name;
    for (const char c : tagNumber.substr(0, longestName)) {
        const bool isHarmless = static_cast<unsigned char>(c) >= 0x80 || isLetterOrDigit(c) ||
                                std::string_view(" -_.+()#").find(c) != std::string_view::npos;
        name += isHarmless ? c : '_';
    }
    // A character of several bytes that the length has cut goes whole.
    if (tagNumber.size() > longestName && (static_cast<unsigned char>(tagNumber[longestName]) & 0xC0) == 0x80) {
        while (!name.empty() && (static_cast<unsigned char>(name.back()) & 0xC0) == 0x80)
            name.pop_back();
        if (!name.empty())
            name.pop_back();
    }
    while (!name.empty() && (name.back() == '.' || name.back() == ' ')) // Windows drops these
        name.pop_back();
    if (name.starts_with('.') || name.starts_with('-') || name.starts_with(' ') || isDevice(name))
        name.insert(0, "_");
    return name;
}

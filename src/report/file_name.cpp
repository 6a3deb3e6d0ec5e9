#include "report/file_name.h"

#include <algorithm>
#include <cctype>

namespace
{

constexpr std::size_t longestName = 100; // bytes: room for a number and the ending on every system

/// Names of devices on Windows, whatever ending they have.
bool isDevice(std::string name)
{
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::toupper(c); });
    name = name.substr(0, name.find('.'));
    const bool isNumbered = name.size() == 4 && (name.starts_with("COM") || name.starts_with("LPT"));
    return name == "CON" || name == "PRN" || name == "AUX" || name == "NUL" || isNumbered;
}

} // namespace

std::string fileNameOf(std::string_view tagNumber)
{
    std::string name;
    for (const char c : tagNumber.substr(0, longestName)) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isHarmless =
            byte >= 0x80 || std::isalnum(byte) || std::string_view(" -_.+()#").find(c) != std::string_view::npos;
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

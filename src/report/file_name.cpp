#include "report/file_name.h"

#include "base/text.h"

#include <algorithm>

namespace
{

constexpr std::size_t longestName = 100; // bytes: room for a number and the ending on every system

bool isLetterOrDigit(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

/// Names of devices on Windows, whatever ending they have.
bool isDevice(std::string name)
{
    name = name.substr(0, name.find('.'));
    name = name.substr(0, name.find_last_not_of(' ') + 1);
    std::ranges::transform(name, name.begin(), upperCase);
    if (name == "CON" || name == "PRN" || name == "AUX" || name == "NUL")
        return true;
    constexpr std::string_view numbers[] = {"1", "2", "3", "4", "5", "6", "7", "8", "9", "\u00B9", "\u00B2", "\u00B3"};
    return (name.starts_with("COM") || name.starts_with("LPT")) &&
           std::ranges::find(numbers, name.substr(3)) != std::end(numbers);
}

/// The bytes of the character that `text` begins with if it is one that does not show: a control character, or one that
/// has no width, ends lines or turns the direction of writing. 0 for any other.
std::size_t unseenLength(std::string_view text)
{
    const auto isOf = [&](std::string_view lead, unsigned char first, unsigned char last) {
        const auto byte = static_cast<unsigned char>(text.size() > lead.size() ? text[lead.size()] : '\0');
        return text.starts_with(lead) && byte >= first && byte <= last;
    };
    if (const std::size_t length = controlLength(text))
        return length;
    // U+200B to U+200F, U+2028 to U+202E, U+2066 to U+2069
    return isOf("\xE2\x80", 0x8B, 0x8F) || isOf("\xE2\x80", 0xA8, 0xAE) || isOf("\xE2\x81", 0xA6, 0xA9) ? 3 : 0;
}

} // namespace

std::string fileNameOf(std::string_view tagNumber)
{
    tagNumber = firstBytes(tagNumber, longestName);
    std::string name;
    while (!tagNumber.empty()) {
        const char c = tagNumber.front();
        const std::size_t unseen = unseenLength(tagNumber);
        const bool isHarmless = static_cast<unsigned char>(c) >= 0x80 || isLetterOrDigit(c) ||
                                std::string_view(" -_.+()#").find(c) != std::string_view::npos;
        name += isHarmless && unseen == 0 ? c : '_';
        tagNumber.remove_prefix(std::max<std::size_t>(unseen, 1));
    }
    while (!name.empty() && (name.back() == '.' || name.back() == ' ')) // Windows drops these
        name.pop_back();
    if (name.starts_with('.') || name.starts_with('-') || name.starts_with(' ') || isDevice(name))
        name.insert(0, "_");
    return name;
}

#include "base/text.h"

namespace
{

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        const auto lead = static_cast<unsigned char>(text.front());
        const std::size_t length = lead < 0x80   ? 1
                                   : lead < 0xC2 ? 0
                                   : lead < 0xE0 ? 2
                                   : lead < 0xF0 ? 3
                                   : lead < 0xF5 ? 4
                                                 : 0;
        if (length == 0 || length > text.size() || !std::ranges::all_of(text.substr(1, length - 1), isContinuation))
            return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string_view firstBytes(std::string_view text, std::size_t most)
{
    if (text.size() <= most)
        return text;
    while (most > 0 && isContinuation(text[most]))
        --most;
    return text.substr(0, most);
}

std::size_t firstLength(std::string_view text)
{
    const auto next = std::find_if_not(text.begin() + (text.empty() ? 0 : 1), text.end(), isContinuation);
    return static_cast<std::size_t>(next - text.begin());
}

std::size_t controlLength(std::string_view text)
{
    const auto byte = [&](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0xFF; };
    if (byte(0) < ' ' || byte(0) == 0x7F)
        return 1;
    return byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) < 0xA0 ? 2 : 0; // U+0080 to U+009F are C2 80 to C2 9F
}

std::string utf8Of(char32_t character)
{
    const auto last = static_cast<char>(0x80 | (character & 0x3F));
    if (character < 0x80)
        return {static_cast<char>(character)};
    if (character < 0x800)
        return {static_cast<char>(0xC0 | (character >> 6)), last};
    return {static_cast<char>(0xE0 | (character >> 12)), static_cast<char>(0x80 | ((character >> 6) & 0x3F)), last};
}

std::string_view without(std::span<const std::string_view> blanks, std::string_view text)
{
    const auto isSign = [](char c) { return c > ' ' && c < '\x7F'; };
    if (text.empty() || (isSign(text.front()) && isSign(text.back()))) // as nearly all are
        return text;
    for (std::size_t before = text.size() + 1; before != text.size();) {
        before = text.size();
        for (const std::string_view blank : blanks) {
            if (text.starts_with(blank))
                text.remove_prefix(blank.size());
            if (text.ends_with(blank))
                text.remove_suffix(blank.size());
        }
    }
    return text;
}

std::string_view trimmed(std::string_view text)
{
    // Also those that web pages, PDF files and Windows's text files give.
    constexpr std::string_view around[] = {" ",      "\t",     "\n",     "\r",
                                           "\u00a0", "\u2007", "\u2009", "\u200a",  // narrow and no-break ones
                                           "\u202f", "\u200b", "\u2060", "\ufeff"}; // and those of no width
    return without(around, text);
}

bool isAlike(std::string_view one, std::string_view other)
{
    return equalsInAnyCase(trimmed(one), trimmed(other));
}

std::string inQuotes(const std::string& text)
{
    return '"' + text + '"';
}

std::string inDoubledQuotes(std::string_view text)
{
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

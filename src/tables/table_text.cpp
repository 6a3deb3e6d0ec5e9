#include "tables/table_text.h"

#include "files/csv_reader.h"
#include "files/system.h"
#include "tables/findings.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string_view>

namespace fs = std::filesystem;

const Rule fileTooLarge{Severity::error, "a file too large for a table", "look whether it is the right one"};

namespace
{

constexpr Rule fileUnreadable{Severity::error, "the file cannot be read"};
constexpr Rule fileNamedOtherwise{Severity::error, "the file is named otherwise", "rename it"};

constexpr std::size_t mostBytes = 8'000'000; // 20,000 rows are two million bytes

// Windows-1252 from 0x80 to 0x9F; from 0xA0 on it is Latin-1. 0 is for a byte that it does not use.
constexpr std::array<char32_t, 32> windows1252 = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                  0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void append(std::string& text, char32_t sign)
{
    if (sign < 0x80) {
        text += static_cast<char>(sign);
    } else if (sign < 0x800) {
        text += static_cast<char>(0xC0 | (sign >> 6));
        text += static_cast<char>(0x80 | (sign & 0x3F));
    } else {
        text += static_cast<char>(0xE0 | (sign >> 12));
        text += static_cast<char>(0x80 | ((sign >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (sign & 0x3F));
    }
}

/// UTF-16 without its byte-order mark. Characters that need two units become "?": no name or size
/// has one.
std::string fromUtf16(std::string_view bytes, bool bigEndian)
{
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto high = static_cast<unsigned char>(bytes[at + (bigEndian ? 0 : 1)]);
        const auto low = static_cast<unsigned char>(bytes[at + (bigEndian ? 1 : 0)]);
        const auto sign = static_cast<char32_t>((high << 8) | low);
        append(text, sign >= 0xD800 && sign < 0xE000 ? U'?' : sign);
    }
    return text;
}

std::string fromWindows1252(std::string_view bytes)
{
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        const char32_t sign = byte >= 0x80 && byte < 0xA0 ? windows1252[byte - 0x80] : byte;
        append(text, sign == 0 ? U'?' : sign);
    }
    return text;
}

} // namespace

std::optional<std::string> bytesOf(fs::path path, Findings& findings)
{
    const std::string name = textOf(path.filename());
    std::error_code failure;
    if (!fs::exists(path, failure))
        for (const auto& entry : fs::directory_iterator(path.parent_path(), failure))
            if (const std::string other = textOf(entry.path().filename()); isAlike(other, name)) {
                findings.report(fileNamedOtherwise, name, 0, other, name + ", capitals included");
                path = entry.path();
                break;
            }
    errno = 0;
    std::ifstream in(path, std::ios::binary);
    in.peek(); // a directory can be opened, but not read
    if (in.bad() || !in.is_open()) {
        const std::string reason = whyUnreadable(path);
        findings.report(fileUnreadable, name, 0, reason.empty() ? std::strerror(errno) : reason);
        return std::nullopt;
    }
    in.clear();
    std::string bytes(mostBytes, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    if (bytes.size() < mostBytes)
        return bytes;
    findings.report(fileTooLarge, name, 0, "more than 8 million bytes");
    return std::nullopt;
}

TableText decoded(const std::string& bytes)
{
    const std::string_view view = bytes;
    if (view.starts_with("\xFF\xFE") || view.starts_with("\xFE\xFF"))
        return {fromUtf16(view.substr(2), view[0] == '\xFE'), "UTF-16"};
    const std::string_view start = view.substr(0, 4096);
    if (const std::size_t nul = start.find('\0'); nul != std::string_view::npos)
        return {fromUtf16(view, nul % 2 == 0), "UTF-16, or no text"};
    const std::string_view text = view.starts_with("\xEF\xBB\xBF") ? view.substr(3) : view;
    if (isUtf8(text))
        return {std::string(text), nullptr};
    std::size_t line = 1;
    for (std::size_t at = 0; at < text.size(); ++line) { // the first line that is not UTF-8
        const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
        if (!isUtf8(text.substr(at, end - at)))
            break;
        at = end + (text.substr(end).starts_with("\r\n") ? 2 : 1);
    }
    return {fromWindows1252(text), "bytes of another encoding, perhaps Windows-1252", line};
}

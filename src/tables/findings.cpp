#include "tables/findings.h"

#include "base/text.h"

#include <algorithm>
#include <ostream>

namespace
{

constexpr std::size_t mostOfAKind = 10; // of one rule in one file

constexpr const char* severityNames[] = {"note", "warning", "error"};

const char* nameOf(const Rule& rule)
{
    return severityNames[static_cast<std::size_t>(rule.severity)];
}

} // namespace

std::string messageText(std::string_view value, std::size_t most)
{
    std::string text(value);
    if (text.size() > most)
        text = std::string(firstBytes(text, most)) + "...";
    std::ranges::replace_if(
        text, [](unsigned char byte) { return byte < ' ' || byte == 0x7F; }, '?');
    return text;
}

Findings::Kind& Findings::kindOf(const Rule& rule, std::string_view file)
{
    const auto known =
        std::ranges::find_if(kinds, [&](const Kind& kind) { return kind.rule == &rule && kind.file == file; });
    if (known != kinds.end())
        return *known;
    kinds.push_back({&rule, std::string(file), 0});
    return kinds.back();
}

void Findings::report(const Rule& rule, std::string_view file, std::size_t line, std::string_view found,
                      std::string_view expected)
{
    errorCount += rule.severity == Severity::error;
    warningCount += rule.severity == Severity::warning;
    if (++kindOf(rule, file).count > mostOfAKind)
        return;
    out << file;
    if (line > 0)
        out << ':' << line;
    out << ": " << nameOf(rule) << ": " << rule.fault;
    if (!found.empty())
        out << ": " << messageText(found, std::string::npos);
    if (!expected.empty())
        out << "; expected " << messageText(expected, std::string::npos);
    out << (*rule.remedy != '\0' ? "; " : "") << rule.remedy << '\n';
}

void Findings::finish()
{
    for (const Kind& kind : kinds)
        if (kind.count > mostOfAKind)
            out << kind.file << ": " << nameOf(*kind.rule) << ": and " << kind.count - mostOfAKind
                << " more like it: " << kind.rule->fault << '\n';
    kinds.clear();
}

#include "tables/body_sizes.h"
#include "tables/findings.h"
#include "tables/table_checks.h"

#include "base/offered.h"

namespace
{

/// The first row of each Cv, for its body size. Another check finds a Cv with two sizes in one
/// table.
using Sizes = std::map<float, const CapacityRow*>;

std::string sizeText(float cv, const CapacityRow& row)
{
    return "Bodysize " + messageText(row.bodySize) + " of " + cvText(cv);
}

constexpr Rule sizeIsADate{Severity::error, "a body size that a spreadsheet has made a date",
                           "format the column as text and write the size with its mark, as 1/2\""};
constexpr Rule sizeAgainstRule{Severity::warning, "a body size does not fit the pressure rule of its CV",
                               "correct the one that is wrong: the program goes by the CV"};
constexpr Rule sizeShrinks{Severity::warning, "a body size shrinks as the CV grows", "look for shifted sizes"};

void checkTable(const ValveTable& table, const Sizes& sizes, Findings& findings)
{
    const auto report = [&](const Rule& rule, const CapacityRow& row, const std::string& found,
                            const std::string& expected) {
        findings.report(rule, table.read->source, row.line, found, expected);
    };
    const CapacityRow* before = nullptr;
    for (const auto& [cv, row] : sizes) {
        const auto inches = inchesOf(row->bodySize);
        if (!inches && isMadeADate(row->bodySize))
            report(sizeIsADate, *row, sizeText(cv, *row), "a size such as 1/2\"");
        if (inches && table.spec.valveType == choice::pad && (cv <= halfInchCv) != (*inches <= 0.5))
            report(sizeAgainstRule, *row, sizeText(cv, *row),
                   cv <= halfInchCv ? "1/2\" up to CV 0.4" : "more than 1/2\" above CV 0.4");
        const auto inchesBefore = before != nullptr ? inchesOf(before->bodySize) : std::nullopt;
        if (inches && inchesBefore && *inches < *inchesBefore)
            report(sizeShrinks, *row, sizeText(cv, *row),
                   "at least the " + messageText(before->bodySize) + " of " + cvText(static_cast<float>(before->cv)) +
                       lineText(before->line));
        before = row;
    }
}

constexpr Rule sizesDiffer{Severity::error, "a CV has another body size in another table",
                           "correct the one that is wrong"};
constexpr Rule sizeTextsDiffer{Severity::warning, "a CV has another body size in another table",
                               "write both alike, or correct the one that is wrong"};

/// Whether two texts are the same size; nullopt when they differ and one of them cannot be read.
std::optional<bool> isSameSize(const std::string& one, const std::string& other)
{
    if (one == other)
        return true;
    const auto inches = inchesOf(one);
    const auto otherInches = inchesOf(other);
    return inches && otherInches ? std::optional(*inches == *otherInches) : std::nullopt;
}

} // namespace

void checkBodySizes(const std::vector<ValveTable>& tables, Findings& findings)
{
    std::vector<Sizes> sizes(tables.size());
    for (std::size_t at = 0; at < tables.size(); ++at) {
        for (const auto& [cv, curve] : tables[at].curves)
            sizes[at][cv] = curve.begin()->second;
        checkTable(tables[at], sizes[at], findings);
    }
    // A table that agrees with another one is right. Of two tables that differ, the later one is
    // reported.
    for (std::size_t at = 0; at < tables.size(); ++at)
        for (const auto& [cv, row] : sizes[at]) {
            const CapacityRow* differing = nullptr;
            std::size_t where = 0;
            bool hasCompanion = false;
            for (std::size_t other = 0; other < tables.size(); ++other) {
                const auto same = sizes[other].find(cv);
                if (other == at || same == sizes[other].end())
                    continue;
                if (isSameSize(row->bodySize, same->second->bodySize) == true) {
                    hasCompanion = true;
                } else if (differing == nullptr) {
                    differing = same->second;
                    where = other;
                }
            }
            if (differing == nullptr || hasCompanion || (tables.size() == 2 && at == 0))
                continue;
            findings.report(isSameSize(row->bodySize, differing->bodySize) ? sizesDiffer : sizeTextsDiffer,
                            tables[at].read->source, row->line, sizeText(cv, *row),
                            messageText(differing->bodySize) + " as in " + std::string(tables[where].spec.name));
        }
}

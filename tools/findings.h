#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

enum class Severity
{
    note,    ///< what was done
    warning, ///< what is only odd
    error,   ///< what cannot be right
};

/// What tables are held to. One object a rule: findings of one rule are one kind.
struct Rule
{
    Severity severity;
    const char* words; ///< follow what was found
};

/// A value as a message shows it: cut to `most` bytes, control characters as "?".
std::string shown(std::string_view value, std::size_t most = 60);

/// Writes findings as they come, one a line ("psi_Pad.csv:17: error: flow 0: a flow is above 0"), and counts them. Of a
/// kind that fills a file, the first twenty are written.
class Findings
{
public:
    explicit Findings(std::ostream& messages) : out(messages) {}

    /// `line` 0: the file as a whole. `found` names column and value.
    void report(const Rule& rule, std::string_view file, std::size_t line, std::string_view found);

    /// Says how many findings were not written; after the last one.
    void finish();

    std::size_t errors() const { return errorCount; }
    std::size_t warnings() const { return warningCount; }

private:
    struct Kind
    {
        const Rule* rule;
        std::string file;
        std::size_t count;
    };
    Kind& kindOf(const Rule& rule, std::string_view file);

    std::ostream& out;
    std::vector<Kind> kinds;
    std::size_t errorCount = 0;
    std::size_t warningCount = 0;
};

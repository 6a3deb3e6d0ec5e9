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

/// What tables are held to, by the fault that it reports. One object a rule: findings of one rule are one kind.
struct Rule
{
    Severity severity;
    const char* fault;
    const char* remedy = ""; ///< what the user is to do
};

/// A value as a message shows it: cut to `most` bytes, control characters as "?".
std::string shown(std::string_view value, std::size_t most = 60);

/// Writes findings as they come, one a line ("psi_Pad.csv:17: error: a flow of 0: flow 0; expected more than 0; correct
/// it"), and counts them. Of a kind that fills a file, the first ten are written.
class Findings
{
public:
    explicit Findings(std::ostream& messages) : out(messages) {}

    /// `line` 0: the file as a whole. `found` names column and value; it and `expected` may be empty.
    void report(const Rule& rule, std::string_view file, std::size_t line, std::string_view found,
                std::string_view expected = "");

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

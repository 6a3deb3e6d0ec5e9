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

/// A rule for tables, named by the fault that it reports. Findings of the same object are of one
/// kind.
struct Rule
{
    Severity severity;
    const char* fault;
    const char* remedy = ""; ///< what the user is to do
};

/// A value as messages show it: cut to `most` bytes, with "?" for control characters.
std::string messageText(std::string_view value, std::size_t most = 60);

/// Writes findings as they come, one a line ("psi_Pad.csv:17: error: a flow of 0: flow 0; expected
/// more than 0; correct it"), and counts them. Of each kind, the first ten of a file are written.
class Findings
{
public:
    explicit Findings(std::ostream& messages) : out(messages) {}

    /// `line` 0: the file as a whole. `found` names column and value; it and `expected` may be
    /// empty.
    void report(const Rule& rule, std::string_view file, std::size_t line, std::string_view found,
                std::string_view expected = "");

    /// Writes how many findings were left out. Call it after the last one.
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

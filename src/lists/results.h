#pragma once

#include "files/replacement_file.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

/// Ends the command with a line on standard error and exit status 2.
struct Stopped : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Where the results go, row by row.
class Results
{
public:
    /// "-" is standard output. Every failure throws Stopped.
    explicit Results(const std::string& name);

    bool goToTerminal() const;

    /// What becomes of them when the work stops.
    const char* afterStop() const { return file_ ? "no results are kept" : "the results end there"; }

    void write(std::string_view text);
    void finish();

private:
    template <typename Action>
    void attempt(const Action& action);

    std::string name_;
    std::optional<ReplacementFile> file_;
};

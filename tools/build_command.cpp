#include "build_command.h"

#include "capacity_database.h"
#include "capacity_tables.h"
#include "findings.h"
#include "replacement_file.h"
#include "table_checks.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace
{

constexpr const char* usage = R"(usage: build_capacities [--complete] IN_DIR OUT_FILE
       build_capacities --check FILE
       build_capacities --export FILE OUT_DIR
       build_capacities --help | --version

Builds the data file OUT_FILE from the capacity tables, one CSV file each, in IN_DIR. What cannot be right is refused,
what is only odd is warned of.

  --complete  fills the rows that a Cv lacks at pressures of the others, between its own rows on the straight line
  --check     holds the tables of an existing data file to the same rules
  --export    writes the tables of a data file as CSV files into OUT_DIR, where there must be none of them yet

Exit status: 0 done, 1 refused or not written, 2 wrong arguments.
)";

constexpr Rule cannotBeWritten{Severity::error, "cannot be written"};
constexpr Rule neverOverwritten{Severity::error, "a table that is there is not overwritten"};

/// What a finished command says last.
int close(Findings& findings, std::ostream& messages, const std::string& done, const std::string& notDone)
{
    findings.finish();
    messages << "build_capacities: errors: " << findings.errors() << ", warnings: " << findings.warnings() << "; "
             << (findings.errors() == 0 ? done : notDone) << '\n';
    return findings.errors() == 0 ? 0 : 1;
}

/// Writes a whole file; a failure is a finding.
void writeFile(const fs::path& file, const std::string& bytes, Findings& findings)
{
    try {
        ReplacementFile replacement(file);
        replacement.write(bytes);
        replacement.putInPlace();
    } catch (const std::runtime_error& failure) {
        findings.report(cannotBeWritten, file.string(), 0, failure.what());
    }
}

int build(const std::string& directory, const std::string& file, bool complete, std::ostream& messages)
{
    Findings findings(messages);
    CapacityTables tables = readCapacityTables(directory, findings);
    if (complete)
        completeTables(tables, findings);
    checkTables(tables, findings);
    if (findings.errors() == 0)
        writeFile(file, databaseBytes(tables), findings);
    return close(findings, messages, file + " is built", "nothing is written");
}

int check(const std::string& file, std::ostream& messages)
{
    Findings findings(messages);
    checkTables(readDatabase(file, findings), findings);
    return close(findings, messages, file + " can be used", file + " must not be used");
}

int exportTables(const std::string& file, const fs::path& directory, std::ostream& messages)
{
    Findings findings(messages);
    const CapacityTables tables = readDatabase(file, findings);
    const auto forEachFile = [&](const auto& write) {
        for (const auto& [name, table] : tables.valves)
            write(directory / (name + ".csv"), table);
        for (const auto& [name, table] : tables.largeTanks)
            write(directory / (name + ".csv"), table);
    };
    forEachFile([&](const fs::path& path, const auto&) {
        std::error_code ignored;
        if (fs::exists(fs::symlink_status(path, ignored)))
            findings.report(neverOverwritten, path.string(), 0, "the file exists");
    });
    std::error_code failure;
    if (findings.errors() == 0 && !fs::create_directories(directory, failure) && failure)
        findings.report(cannotBeWritten, directory.string(), 0, failure.message());
    if (findings.errors() == 0)
        forEachFile([&](const fs::path& path, const auto& table) { writeFile(path, csvText(table), findings); });
    return close(findings, messages, directory.string() + " holds the tables", "not all is written");
}

} // namespace

int buildCapacities(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& messages)
{
    const std::string option =
        !arguments.empty() && arguments.front().starts_with("--") ? arguments.front() : std::string();
    const auto isCommand = [&](const char* wanted, std::size_t operands) {
        return option == wanted && arguments.size() == operands + (option.empty() ? 0 : 1);
    };
    if (isCommand("--help", 0)) {
        out << usage;
        return 0;
    }
    if (isCommand("--version", 0)) {
        out << "build_capacities " SIZING_VERSION "\n";
        return 0;
    }
    if (isCommand("", 2))
        return build(arguments[0], arguments[1], false, messages);
    if (isCommand("--complete", 2))
        return build(arguments[1], arguments[2], true, messages);
    if (isCommand("--check", 1))
        return check(arguments[1], messages);
    if (isCommand("--export", 2))
        return exportTables(arguments[1], arguments[2], messages);
    messages << usage;
    return 2;
}

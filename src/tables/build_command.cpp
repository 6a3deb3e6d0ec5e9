#include "tables/build_command.h"

#include "files/arguments.h"
#include "files/replacement_file.h"
#include "files/system.h"
#include "tables/capacity_database.h"
#include "tables/capacity_tables.h"
#include "tables/complete_tables.h"
#include "tables/findings.h"
#include "tables/table_checks.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace
{

constexpr const char* usage = R"(usage: build_capacities [--label TEXT] [--complete] IN_DIR OUT_FILE
       build_capacities --check FILE
       build_capacities --export [--decimal-comma] FILE OUT_DIR
       build_capacities --help | --version

Builds the data file OUT_FILE from the capacity tables in IN_DIR, which are CSV files. It refuses what cannot be right
and warns of what is only odd. --label and --complete may stand in either order.

  --label     stores in the data file what its tables are, such as "nominal, computed", and the date of today (or of
              SOURCE_DATE_EPOCH); at most 100 bytes of UTF-8
  --complete  adds pressures between those of a table where the steps from Cv to Cv need them, and the rows that a Cv
              lacks; all of them on the straight line between the Cv's own rows
  --check     checks the tables of an existing data file by the same rules
  --export    writes the tables of a data file as CSV files into OUT_DIR, but not over files that are there; with
              --decimal-comma for spreadsheets that write 1,5, as in German or French

Exit status: 0 done, 1 refused or not written, 2 wrong arguments.
)";

constexpr Rule cannotBeWritten{Severity::error, "the file cannot be written"};
constexpr Rule isNoDataFile{Severity::error, "a file of another kind is there", "name another file"};
constexpr Rule fileExists{Severity::error, "the file exists", "name another directory: no table is overwritten"};

constexpr std::size_t mostOfLabel = 100; // bytes: one line of the screens and of the summary

/// Writes the last line of a finished command and gives the exit status.
int close(Findings& findings, std::ostream& messages, const std::string& done, const std::string& notDone)
{
    findings.finish();
    messages << "build_capacities: errors: " << findings.errors() << ", warnings: " << findings.warnings() << "; "
             << (findings.errors() == 0 ? done : notDone) << '\n';
    return findings.errors() == 0 ? 0 : 1;
}

int print(std::ostream& out, const char* text, std::ostream& messages)
{
    out << text << std::flush;
    if (!out)
        messages << "build_capacities: standard output cannot be written\n";
    return out ? 0 : 1;
}

/// Whether a new data file may replace what is there: an earlier data file, or an empty one. A slip
/// in the arguments must not destroy somebody's tables. A directory or a device is refused later,
/// when the file is written.
bool isReplaceable(const fs::path& file)
{
    constexpr std::string_view beginning("SQLite format 3\0", 16);
    std::error_code ignored;
    if (!fs::is_regular_file(file, ignored))
        return true;
    std::string found(beginning.size(), ' ');
    std::ifstream in(file, std::ios::binary);
    in.read(found.data(), static_cast<std::streamsize>(found.size()));
    return in.is_open() && (in.gcount() == 0 || found == beginning);
}

/// Writes a file and puts it in its place. Gives whether that worked; a failure is a finding.
bool writeFile(const fs::path& file, const std::string& bytes, void (ReplacementFile::*put)(), Findings& findings)
{
    try {
        ReplacementFile replacement(file);
        replacement.write(bytes);
        if (isInterrupted())
            throw std::runtime_error("interrupted");
        (replacement.*put)();
        return true;
    } catch (const std::runtime_error& failure) {
        findings.report(cannotBeWritten, textOf(file), 0, failure.what());
        return false;
    }
}

/// The date of today in UTC, or that of SOURCE_DATE_EPOCH, which makes the same bytes from the same
/// tables. Throws std::invalid_argument when SOURCE_DATE_EPOCH is no number of seconds up to the
/// year 9999.
std::string dateOfBuild()
{
    using namespace std::chrono;
    constexpr sys_seconds firstTooLate = sys_days(year(10000) / 1 / 1);
    sys_seconds time = floor<seconds>(system_clock::now());
    if (const char* const given = std::getenv("SOURCE_DATE_EPOCH")) {
        const std::string_view text = given;
        std::uint64_t count = 0;
        const auto [stop, failure] = std::from_chars(text.data(), text.data() + text.size(), count);
        if (failure != std::errc() || stop != text.data() + text.size() ||
            count >= static_cast<std::uint64_t>(firstTooLate.time_since_epoch().count()))
            throw std::invalid_argument("SOURCE_DATE_EPOCH is not a number of seconds since 1970");
        time = sys_seconds(seconds(count));
    }
    const year_month_day date = floor<days>(time);
    char text[16];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text;
}

/// Throws std::invalid_argument for a text that cannot be shown or is too long.
TablesLabel labelOf(const std::string& text)
{
    if (const char* const fault = textFault(text))
        throw std::invalid_argument(std::string("the label ") + fault);
    if (text.size() > mostOfLabel)
        throw std::invalid_argument("the label is longer than 100 bytes");
    return {text, dateOfBuild()};
}

int build(Arguments given, std::ostream& messages)
{
    const fs::path file = pathOf(given.operands[1]);
    std::optional<TablesLabel> label;
    try {
        if (given.has("label"))
            label = labelOf(given.options["label"]);
    } catch (const std::invalid_argument& wrong) {
        messages << "build_capacities: " << wrong.what() << '\n';
        return 2;
    }
    Findings findings(messages);
    if (!isReplaceable(file))
        findings.report(isNoDataFile, textOf(file), 0, "", "a data file, or none");
    CapacityTables tables = readCapacityTables(pathOf(given.operands[0]), findings);
    tables.label = label;
    if (given.has("complete"))
        completeTables(tables, findings);
    checkTables(tables, findings);
    if (findings.errors() == 0)
        writeFile(file, databaseBytes(tables), &ReplacementFile::putInPlace, findings);
    return close(findings, messages, textOf(file) + " is built", "nothing is written");
}

/// The end of a closing line: "; " and the label of the tables.
std::string labelText(const std::optional<TablesLabel>& label)
{
    return label ? "; its tables are labelled \"" + messageText(label->label, mostOfLabel) + "\", " +
                       messageText(label->date)
                 : "; its tables have no label";
}

int check(const fs::path& file, std::ostream& messages)
{
    Findings findings(messages);
    const CapacityTables tables = readDatabase(file, findings);
    checkTables(tables, findings);
    return close(findings, messages, textOf(file) + " can be used" + labelText(tables.label),
                 textOf(file) + " must not be used");
}

/// `text` as one argument of a shell.
std::string shellText(const std::string& text)
{
    std::string quoted = "\"";
    for (const char sign : text)
        quoted += (std::strchr("\"\\$`", sign) != nullptr ? "\\" : "") + std::string(1, sign);
    return quoted + '"';
}

int exportTables(const fs::path& file, const fs::path& directory, bool decimalComma, std::ostream& messages)
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
            findings.report(fileExists, textOf(path), 0, "");
    });
    std::error_code failure;
    if (findings.errors() == 0 && !fs::create_directories(directory, failure) && failure)
        findings.report(cannotBeWritten, textOf(directory), 0, failure.message());
    std::vector<fs::path> written;
    forEachFile([&](const fs::path& path, const auto& table) {
        if (findings.errors() == 0 &&
            writeFile(path, csvText(table, decimalComma), &ReplacementFile::putInFreePlace, findings))
            written.push_back(path);
    });
    if (findings.errors() > 0) // the next export would refuse to overwrite them
        for (const fs::path& path : written)
            fs::remove(path, failure);
    std::string done = textOf(directory) + " holds the tables of " + textOf(file) + labelText(tables.label);
    if (tables.label)
        done += "; build with --label " + shellText(messageText(tables.label->label, mostOfLabel)) + " to keep that";
    return close(findings, messages, done, "nothing is written");
}

} // namespace

int buildCapacities(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& messages)
{
    const auto given =
        readArguments("build_capacities", arguments,
                      {{"check"}, {"complete"}, {"decimal-comma"}, {"export"}, {"help"}, {"label", true}, {"version"}});
    // Whether the command is asked for by its option, with so many operands, and no option but these.
    const auto isCommand = [&](std::string_view option, std::size_t operands,
                               std::initializer_list<std::string_view> others = {}) {
        const auto isPermitted = [&](const auto& one) {
            return one.first == option || std::ranges::find(others, one.first) != others.end();
        };
        return given && given->operands.size() == operands && (option.empty() || given->has(option)) &&
               std::ranges::all_of(given->options, isPermitted);
    };
    if (isCommand("help", 0))
        return print(out, usage, messages);
    if (isCommand("version", 0))
        return print(out, "build_capacities " SIZING_VERSION "\n", messages);
    if (isCommand("check", 1))
        return check(pathOf(given->operands[0]), messages);
    prepareConsole(); // Ctrl+C then ends the program where nothing half written is left
    if (isCommand("export", 2, {"decimal-comma"}))
        return exportTables(pathOf(given->operands[0]), pathOf(given->operands[1]), given->has("decimal-comma"),
                            messages);
    if (isCommand("", 2, {"label", "complete"}))
        return build(*given, messages);
    messages << usage;
    return 2;
}

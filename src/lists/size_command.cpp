#include "lists/size_command.h"

#include "files/replacement_file.h"
#include "files/system.h"
#include "lists/duty_list.h"
#include "lists/summary_files.h"

#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace fs = std::filesystem;

namespace
{

constexpr const char* usage = R"(usage: size_valves [-o RESULTS.csv] [--summaries DIR [--force]] [--quiet] DUTIES.csv
       size_valves --verify | --help | --version

Sizes a tank blanketing valve for each row of a list of duties and writes the list back with the results. "-" stands for
standard input or output; without -o the results go to standard output.

  -o, --output FILE  where the results go, put in place when all rows are done
  --summaries DIR    leaves the printed summary of each sized row as a PDF in DIR, named by its tag number
  --force            overwrites summaries that are there
  --quiet            says nothing of progress and numbers of rows
  --verify           sizes the verification list beside the program and writes a report to be signed

Exit status: 0 all rows are sized or agree, 1 some are not or lack their summary, 2 not finished.
)";

struct Options
{
    const char* told = nullptr; ///< all that is wanted
    bool verify = false;        ///< all that is wanted
    std::string list;
    std::string output = "-";
    std::optional<std::string> summaries; ///< the directory
    bool force = false;
    bool quiet = false;
};

/// Ends the command with a line on standard error and exit status 2.
struct Stopped : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

bool canBeMeant(const Options& options)
{
    const bool hasEmptyName = options.list.empty() || options.output.empty() || options.summaries == "";
    return !hasEmptyName && (options.summaries || !options.force);
}

/// Reads the arguments; nullopt when they are wrong.
std::optional<Options> readOptions(std::vector<std::string> arguments)
{
    enum
    {
        summaries = 256,
        force,
        quiet,
        verify,
        help,
        version,
    };
    const option longOptions[] = {
        {"output", required_argument, nullptr, 'o'}, {"summaries", required_argument, nullptr, summaries},
        {"force", no_argument, nullptr, force},      {"quiet", no_argument, nullptr, quiet},
        {"verify", no_argument, nullptr, verify},    {"help", no_argument, nullptr, help},
        {"version", no_argument, nullptr, version},  {nullptr, 0, nullptr, 0},
    };
    std::string program = "size_valves";
    std::vector<char*> pointers = {program.data()};
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    const auto count = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);
    Options options;
    optind = 0; // from the start again
    for (int found = 0; (found = getopt_long(count, pointers.data(), "o:", longOptions, nullptr)) != -1;)
        switch (found) {
            case 'o':
                options.output = optarg;
                break;
            case summaries:
                options.summaries = optarg;
                break;
            case force:
                options.force = true;
                break;
            case quiet:
                options.quiet = true;
                break;
            case verify:
                options.verify = true;
                return options;
            case help:
                options.told = usage;
                return options;
            case version:
                options.told = "size_valves " SIZING_VERSION "\n";
                return options;
            default:
                return std::nullopt;
        }
    if (optind + 1 != count)
        return std::nullopt;
    options.list = pointers[static_cast<std::size_t>(optind)];
    return canBeMeant(options) ? std::optional(options) : std::nullopt;
}

/// The list, which can be read twice: what comes through a pipe is kept in a temporary file.
class ListFile
{
public:
    explicit ListFile(const std::string& name)
    {
        if (name != "-") {
            file_.open(pathOf(name), std::ios::in | std::ios::binary);
            file_.peek(); // a directory can be opened, but not read
            if (!file_.is_open() || file_.bad())
                throw Stopped(name + ": " + std::strerror(errno));
            file_.clear();
            if (file_.tellg() != std::streampos(-1))
                return;
        }
        if (name == "-")
            keep(std::cin, "standard input");
        else
            keep(file_, name);
    }
    ListFile(const ListFile&) = delete;
    ListFile& operator=(const ListFile&) = delete;
    ~ListFile()
    {
        kept_.close();
        removeKept();
    }

    std::istream& stream()
    {
        if (kept_.is_open())
            return kept_;
        return file_;
    }

private:
    void keep(std::istream& pipe, const std::string& name)
    {
        keptFile_ = createTemporaryFile();
        kept_.open(keptFile_, std::ios::in | std::ios::out | std::ios::binary);
        removeKept(); // at once, where the system lets an open file go
        constexpr int end = std::char_traits<char>::eof();
        if (pipe.peek() != end) // nothing to write counts as a failure
            kept_ << pipe.rdbuf();
        if (std::ferror(stdin) != 0 || pipe.bad() || !kept_.flush() || pipe.peek() != end) // a part is no list
            throw Stopped(name + " cannot be read or kept: " + std::strerror(errno));
        kept_.seekg(0);
    }

    void removeKept()
    {
        std::error_code isOpen;
        if (!keptFile_.empty() && fs::remove(keptFile_, isOpen))
            keptFile_.clear();
    }

    std::ifstream file_;
    std::fstream kept_;
    fs::path keptFile_;
};

/// Where the results go, row by row.
class Results
{
public:
    explicit Results(const std::string& name) : name_(name == "-" ? "standard output" : name)
    {
        if (name != "-")
            attempt([&] { file_.emplace(pathOf(name), ordinaryMode()); });
    }

    bool goToTerminal() const { return !file_ && isatty(STDOUT_FILENO) != 0; }

    /// What becomes of them when the work stops.
    const char* afterStop() const { return file_ ? "no results are kept" : "the results end there"; }

    void write(const std::string& text)
    {
        attempt([&] {
            if (file_)
                file_->write(text);
            else
                writeOut(text);
        });
    }

    void finish()
    {
        if (file_)
            attempt([&] { file_->putInPlace(); });
    }

private:
    /// Nothing stays in a buffer, which would be written at the end of the program, whoever waits for that.
    static void writeOut(std::string_view text)
    {
        while (!text.empty()) {
            constexpr std::size_t most = 1 << 20; // bytes at a time
            const ssize_t written =
                ::write(STDOUT_FILENO, text.data(), static_cast<unsigned>(std::min(text.size(), most)));
            if (written < 0 && (errno != EINTR || isInterrupted()))
                throw std::runtime_error(std::strerror(errno));
            text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
        }
    }

    template <typename Action>
    void attempt(const Action& action)
    {
        try {
            action();
        } catch (const std::runtime_error& failure) {
            throw Stopped(isInterrupted() ? std::string("interrupted; ") + afterStop() : name_ + ": " + failure.what());
        }
    }

    std::string name_;
    std::optional<ReplacementFile> file_;
};

/// How far the work is, on one line of a terminal.
class Progress
{
public:
    Progress(std::size_t rows, bool isShown) : rows_(rows), isShown_(isShown && isatty(STDERR_FILENO) != 0) {}
    ~Progress() { clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(std::size_t done, std::size_t notSized)
    {
        using namespace std::chrono_literals;
        const auto now = Clock::now();
        if (!isShown_ || now - shownAt_ < 200ms)
            return;
        shownAt_ = now;
        const double seconds = std::chrono::duration<double>(now - start_).count();
        const double perSecond = static_cast<double>(done) / seconds;
        const auto left = static_cast<long>(static_cast<double>(rows_ - done) / perSecond);
        std::fprintf(stderr, "\r\033[K%zu of %zu rows, %zu not sized, %.0f rows/s, %ld:%02ld left", done, rows_,
                     notSized, perSecond, left / 60, left % 60);
        std::fflush(stderr);
        hasLine_ = true;
    }

    void clear()
    {
        if (hasLine_)
            std::fputs("\r\033[K", stderr);
        hasLine_ = false;
    }

private:
    using Clock = std::chrono::steady_clock;

    std::size_t rows_;
    bool isShown_;
    bool hasLine_ = false;
    Clock::time_point start_ = Clock::now();
    Clock::time_point shownAt_ = start_;
};

/// How many rows ended in which way.
struct Counts
{
    std::size_t sized = 0;
    std::size_t refused = 0;
    std::size_t failed = 0;
    std::size_t withoutSummary = 0;

    std::size_t rows() const { return sized + refused + failed; }

    void add(SizedDuty::Status status)
    {
        ++(status == SizedDuty::Status::sized ? sized : status == SizedDuty::Status::refused ? refused : failed);
    }
};

Counts sizeAll(DutyList& list, Results& results, SummaryFiles* summaries, bool quiet)
{
    Counts counts;
    Progress progress(list.rowCount(), !quiet && !results.goToTerminal());
    results.write(list.answerHeader());
    while (std::optional<SizedDuty> duty = list.next()) {
        if (summaries != nullptr && duty->status == SizedDuty::Status::sized) {
            const std::string failure = summaries->write(*duty->sizing, duty->row.line, list.numbers());
            if (!failure.empty()) {
                ++counts.withoutSummary;
                duty->sizing->messages.show(failure);
            }
        }
        if (isInterrupted())
            throw Stopped("interrupted after " + std::to_string(counts.rows()) + " rows; " + results.afterStop());
        counts.add(duty->status);
        results.write(list.answer(*duty));
        progress.show(counts.rows(), counts.refused + counts.failed);
    }
    results.finish();
    return counts;
}

int run(const Options& options, const SizeCommandSystem& system)
{
    ListFile file(options.list);
    prepareConsole(); // while a pipe is awaited there is nothing to clean up
    try {
        DutyList list(file.stream(), system.dataFile);
        Results results(options.output);
        std::optional<SummaryFiles> summaries;
        if (options.summaries)
            summaries.emplace(
                pathOf(*options.summaries),
                [&, tables = list.tables()](const SummaryForm& page) { return system.makePdf(page, tables); },
                system.today, options.force);
        const Counts counts = sizeAll(list, results, summaries ? &*summaries : nullptr, options.quiet);
        if (!options.quiet)
            std::cerr << "size_valves: " << counts.rows() << " rows: " << counts.sized << " sized, " << counts.refused
                      << " refused, " << counts.failed << " failed\n";
        if (counts.withoutSummary > 0)
            std::cerr << "size_valves: " << counts.withoutSummary << " summaries are not written, see Messages\n";
        if (list.isDataFileReplaced())
            std::cerr << "size_valves: the data file was changed meanwhile; all rows are sized on the earlier one\n";
        return counts.refused + counts.failed + counts.withoutSummary == 0 ? 0 : 1;
    } catch (const CsvProblem& problem) {
        throw Stopped(options.list + ':' + std::to_string(problem.line) + ": " + problem.what());
    }
}

} // namespace

int sizeValves(const std::vector<std::string>& arguments, const SizeCommandSystem& system)
{
    const std::optional<Options> options = readOptions(arguments);
    if (!options) {
        std::cerr << usage;
        return 2;
    }
    try {
        if (options->verify) {
            const Verification verification = system.verify();
            Results("-").write(verification.report);
            return verification.agrees ? 0 : 1;
        }
        if (options->told == nullptr)
            return run(*options, system);
        Results("-").write(options->told);
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << "size_valves: " << failure.what() << '\n';
        return 2;
    }
}

#include "lists/size_command.h"

#include "files/arguments.h"
#include "files/system.h"
#include "lists/duty_list.h"
#include "lists/results.h"
#include "lists/summary_files.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>

namespace
{

constexpr const char* usage = R"(usage: size_valves [-o RESULTS.csv] [--summaries DIR [--force]] [--quiet] DUTIES.csv
       size_valves --verify | --help | --version

Sizes a tank blanketing valve for each row of a list of duties and writes the list back with the results. "-" stands for
standard input or output; without -o the results go to standard output.

  -o, --output FILE  where the results go, put in place when all rows are done
  --summaries DIR    leaves the printed summary of each sized row as a PDF in DIR, named by its tag number; goes on
                     where it was interrupted
  --force            overwrites summaries that are there
  --quiet            says nothing of progress, numbers of rows and what was taken for granted
  --verify           sizes the verification list beside the program and writes a report to be signed

Exit status: 0 all rows are sized or agree, 1 some are not or lack their summary, 2 not finished.
)";

struct Options
{
    std::string list;
    std::string output = "-";
    std::optional<std::string> summaries; ///< the directory
    bool force = false;
    bool quiet = false;
};

/// What to do for a list; nullopt when the arguments are wrong.
std::optional<Options> optionsOf(Arguments given)
{
    if (given.operands.size() != 1)
        return std::nullopt;
    Options options;
    options.list = given.operands.front();
    if (given.has("output"))
        options.output = given.options["output"];
    if (given.has("summaries"))
        options.summaries = given.options["summaries"];
    options.force = given.has("force");
    options.quiet = given.has("quiet");
    const bool hasEmptyName = options.list.empty() || options.output.empty() || options.summaries == "";
    const bool isRight = !hasEmptyName && (options.summaries || !options.force);
    return isRight ? std::optional(options) : std::nullopt;
}

/// Opens the list. It must be read twice, so a list that comes through a pipe is read into memory.
std::unique_ptr<std::istream> openList(const std::string& name)
{
    auto file = std::make_unique<std::ifstream>();
    if (name != "-") {
        file->open(pathOf(name), std::ios::in | std::ios::binary);
        file->peek(); // a directory can be opened, but not read
        if (!file->is_open() || file->bad())
            throw Stopped(name + ": " + std::strerror(errno));
        file->clear();
        if (file->tellg() != std::streampos(-1))
            return file;
        file->clear();
    }
    std::streambuf* const pipe = (name == "-" ? std::cin : *file).rdbuf();
    try {
        std::string text(std::istreambuf_iterator<char>(pipe), {});
        if (name == "-" && std::ferror(stdin) != 0) // an incomplete list is not sized
            throw Stopped("standard input: " + std::string(std::strerror(errno)));
        return std::make_unique<std::istringstream>(std::move(text));
    } catch (const std::ios_base::failure& failure) {
        throw Stopped(name + ": " + failure.code().message());
    }
}

/// Shows how far the work is, on one line of a terminal.
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
        if (summaries != nullptr)
            duty->summary = summaries->write(list, *duty);
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
    const std::unique_ptr<std::istream> file = openList(options.list);
    prepareConsole(); // while a pipe is awaited there is nothing to clean up
    try {
        DutyList list(*file, system.dataFile);
        Results results(options.output);
        std::optional<SummaryFiles> summaries;
        if (options.summaries)
            summaries.emplace(pathOf(*options.summaries), system.makePdf, system.today, options.force);
        const Counts counts = sizeAll(list, results, summaries ? &*summaries : nullptr, options.quiet);
        if (!options.quiet)
            std::cerr << "size_valves: " << counts.rows() << " rows: " << counts.sized << " sized, " << counts.refused
                      << " refused, " << counts.failed << " failed\n";
        for (const std::string& note : options.quiet ? std::vector<std::string>() : list.notes())
            std::cerr << "size_valves: " << note << '\n';
        if (summaries && summaries->left() > 0 && !options.quiet)
            std::cerr << "size_valves: " << summaries->left() << " summaries were there and say the same\n";
        for (const std::string& fault : summaries ? summaries->faults() : std::vector<std::string>())
            std::cerr << "size_valves: " << fault << '\n';
        if (list.isDataFileReplaced())
            std::cerr << "size_valves: the data file was changed meanwhile; all rows are sized on the earlier one\n";
        const std::size_t withoutSummary = summaries ? summaries->notWritten() : 0;
        return counts.refused + counts.failed + withoutSummary == 0 ? 0 : 1;
    } catch (const CsvProblem& problem) {
        throw Stopped(options.list + ':' + std::to_string(problem.line) + ": " + problem.what());
    }
}

} // namespace

int sizeValves(const std::vector<std::string>& arguments, const SizeCommandSystem& system)
{
    const auto given = readArguments(
        "size_valves", arguments,
        {{"output", true, 'o'}, {"summaries", true}, {"force"}, {"quiet"}, {"verify"}, {"help"}, {"version"}});
    try {
        if (given && (given->has("help") || given->has("version"))) {
            Results("-").write(given->has("help") ? usage : "size_valves " SIZING_VERSION "\n");
            return 0;
        }
        if (given && given->has("verify")) {
            const Verification verification = system.verify();
            Results("-").write(verification.report);
            return verification.agrees ? 0 : 1;
        }
        if (const auto options = given ? optionsOf(*given) : std::nullopt)
            return run(*options, system);
        std::cerr << usage;
        return 2;
    } catch (const std::exception& failure) {
        std::cerr << "size_valves: " << failure.what() << '\n';
        return 2;
    }
}

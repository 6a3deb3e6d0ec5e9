// What a click on "&Select Valve Size" costs beside the bare SQLite calls it cannot do without.
//
// Each line is one duty on data files of 1, 10 and 100 times the shipped rows. Its time is that of the whole click; its
// counters give the bare calls' time in microseconds, the ratio of the two, and the time of the first click, which
// checks the file. Click and bare calls take turns, so that both meet the same machine. For medians: benchmarks
// --benchmark_repetitions=7 --benchmark_report_aggregates_only=true
//
// The lines that begin with "list" size a list of a thousand rows of the duty, CSV included; `ratio` is that of a row
// to a click.

#include "app/sizing_state.h"
#include "base/checked_math.h"
#include "base/number_text.h"
#include "base/sizing_context.h"
#include "capacity/capacity_store.h"
#include "engine/plain_screen.h"
#include "engine/sizing_driver.h"
#include "lists/duty_list.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <iostream>
#include <list>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace
{

using Clock = std::chrono::steady_clock;

struct Duty
{
    const char* name;
    SizingState setup; ///< the choices of the setup screen
    std::map<Box, std::string> boxes;
    double pressure;
    double tankVolume;
    const char* tankTable; ///< read for its DepadHFP; nullptr: the tank is too small for a table
    double nextCv;         ///< the next of the series, when the first choice falls short; else 0
};

SizingState setupChoices(const char* units, const char* type, const char* method, const char* press, const char* table)
{
    SizingState setup;
    setup.UnitSystem = units;
    setup.ValveType = type;
    setup.SizingMethod = method;
    setup.ValveModel = "Series 63";
    setup.PressUnits = press;
    setup.ValveTable = table;
    return setup;
}

std::map<Box, std::string> entries(const char* pumpRate, const char* pressure, const char* volume, const char* gravity,
                                   const char* flashPoint)
{
    return {{Box::txtPumpRate, pumpRate},
            {Box::txtPressure, pressure},
            {Box::txtTankVolume, volume},
            {Box::txtSpecGrav, gravity},
            {Box::txtFlashPoint, flashPoint}};
}

/// The blanketing gas is always the one the capacity tables are written for: a table flow is then a flow of the duty.
const Duty duties[] = {
    {"pad", setupChoices("US", "Pad", "API-2000", "PSI", "psi_Pad"), entries("100", "60", "10000", "0.97", ""), 60,
     10000, nullptr, 0},
    {"pad, Cv stepped up", setupChoices("US", "Pad", "Direct Displacement", "PSI", "psi_Pad"),
     entries("700", "65", "0", "0.97", ""), 65, 0, nullptr, 4},
    {"depad, large tank", setupChoices("Metric", "Depad", "API-2000", "mbar", "mbar_Depad"),
     entries("200", "100", "8500", "1", "60"), 100, 8500, "MetriclargeTank", 0},
};

constexpr int tankDepadHfp = 2; // column of both large-tank tables

// --- The click ---

/// The program without its windows, at one duty.
struct Program
{
    SizingState state;
    PlainScreen screen;
    RecordedMessages messages;
    NumberText numbers;
    CapacityStore store;
    SizingContext sizing{state, screen, messages, numbers, store};

    Program(const Duty& duty, const std::string& file) : state(duty.setup), store(file, numbers)
    {
        screen.boxes = duty.boxes;
    }
    Program(const Program&) = delete; // `sizing` refers to the members
};

// --- The bare calls ---

/// One open of the data file: hands the rows of `sql` to `isLast` until it is satisfied. `cv` is bound when given.
template <typename IsLast>
void walk(const std::string& file, const std::string& sql, std::optional<double> cv, IsLast isLast)
{
    sqlite3* connection = nullptr;
    sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_busy_timeout(connection, 200);
    sqlite3_stmt* row = nullptr;
    sqlite3_prepare_v2(connection, sql.c_str(), -1, &row, nullptr);
    if (cv)
        sqlite3_bind_double(row, 1, *cv);
    while (sqlite3_step(row) == SQLITE_ROW && !isLast(row)) {
    }
    sqlite3_finalize(row);
    sqlite3_close(connection);
}

/// A walk to the first row with at least `key` in column 0 and more than `flow` in `column`; gives the value of
/// `column` at `key`, on the straight line between that row and the one before it.
double interpolated(const std::string& file, const std::string& sql, std::optional<double> cv, double key, int column,
                    double flow)
{
    double keyBefore = 0;
    double valueBefore = 0;
    double found = 0;
    walk(file, sql, cv, [&](sqlite3_stmt* row) {
        const double rowKey = sqlite3_column_double(row, 0);
        const double value = sqlite3_column_double(row, column);
        if (rowKey >= key && value > flow) {
            found =
                rowKey == key ? value : valueBefore + (key - keyBefore) * (value - valueBefore) / (rowKey - keyBefore);
            return true;
        }
        keyBefore = rowKey;
        valueBefore = value;
        return false;
    });
    return found;
}

struct Valve
{
    double breathing = 0;
    double cv = 0;
    double capacity = 0;
    std::string bodySize;
    bool operator==(const Valve&) const = default;
};

/// The opens, queries and walks of one click at `duty`, for the total flow that it showed.
Valve bareCalls(const std::string& file, const Duty& duty, double flow)
{
    const std::string name = duty.setup.ValveTable;
    const std::string table =
        "SELECT * FROM \"" + name + "\" INDEXED BY \"" + name + ".Index\" ORDER BY Pressure, flow";
    const std::string capacity = "Select * FROM " + name + " WHERE CV = ?1 ORDER BY Pressure ASC, flow ASC";
    const auto adequate = [&duty](sqlite3_stmt* row, double wanted) {
        return sqlite3_column_double(row, 0) >= duty.pressure && sqlite3_column_double(row, 1) > wanted;
    };
    const auto bodySize = [&](double wanted) {
        std::string size;
        walk(file, table, {}, [&](sqlite3_stmt* row) {
            if (!adequate(row, wanted))
                return false;
            size = reinterpret_cast<const char*>(sqlite3_column_text(row, 2));
            return true;
        });
        return size;
    };

    Valve valve;
    if (duty.tankTable)
        valve.breathing =
            interpolated(file, std::string("Select * FROM ") + duty.tankTable, {}, duty.tankVolume, tankDepadHfp, -1);
    walk(file, table, {}, [&](sqlite3_stmt* row) {
        if (!adequate(row, flow))
            return false;
        valve.cv = sqlite3_column_double(row, 3);
        return true;
    });
    valve.bodySize = bodySize(flow);
    valve.capacity = toWhole(interpolated(file, capacity, valve.cv, duty.pressure, 1, flow));
    if (duty.nextCv > 0) {
        valve.cv = duty.nextCv;
        valve.capacity = toWhole(interpolated(file, capacity, valve.cv, duty.pressure, 1, flow));
        valve.bodySize = bodySize(valve.capacity);
    }
    return valve;
}

// --- The data files ---

/// Puts rows on the straight lines between those of a table, evenly, up to {scale} times its rows. The gap that {at}
/// falls into stays as it is: at {at}, the same rows are found and the same line is drawn.
const char* const fillGaps = R"(
    WITH RECURSIVE
        point AS (SELECT *, lead({key}) OVER curve AS nextKey, lead({flow}) OVER curve AS nextFlow
                  FROM {table} WINDOW curve AS (PARTITION BY {curve} ORDER BY {key})),
        gap AS (SELECT * FROM point WHERE nextKey <= {at} OR {key} >= {at} AND nextKey IS NOT NULL),
        total AS (SELECT count(*) AS points FROM point),
        split AS (SELECT 1 + (({scale} - 1) * points + count(*) - 1) / count(*) AS parts FROM gap, total),
        step AS (SELECT 1 AS n UNION ALL SELECT n + 1 FROM step, split WHERE n < parts)
    INSERT INTO {table}({key}, {flow} {copied})
    SELECT {key} + (nextKey - {key}) * n / parts, {flow} + (nextFlow - {flow}) * n / parts {copied}
    FROM gap, split, step WHERE n < parts;)";

/// The added rows are not in the checksum of the shipped tables.
const char* const withoutChecksum = "DROP TABLE Checksum; PRAGMA application_id = 0;";

std::string fill(std::string text, const std::map<std::string, std::string>& values)
{
    for (const auto& [name, value] : values)
        for (auto at = text.find(name); at != std::string::npos; at = text.find(name, at + value.size()))
            text.replace(at, name.size(), value);
    return text;
}

/// Copies the shipped data file to `file` and adds rows to the tables of `duty`.
void makeDataFile(const std::string& file, const Duty& duty, int scale)
{
    std::filesystem::copy_file(CAPACITIES_FILE, file);
    std::string sql = fill(fillGaps, {{"{table}", duty.setup.ValveTable},
                                      {"{key}", "Pressure"},
                                      {"{flow}", "flow"},
                                      {"{copied}", ", Bodysize, CV"},
                                      {"{curve}", "CV"},
                                      {"{at}", std::to_string(duty.pressure)},
                                      {"{scale}", std::to_string(scale)}});
    if (duty.tankTable)
        sql += fill(fillGaps, {{"{table}", duty.tankTable},
                               {"{key}", "TankVol"},
                               {"{flow}", "DepadHFP"},
                               {"{copied}", ""},
                               {"{curve}", "0"},
                               {"{at}", std::to_string(duty.tankVolume)},
                               {"{scale}", std::to_string(scale)}});
    sqlite3* connection = nullptr;
    sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READWRITE, nullptr);
    const int result =
        sqlite3_exec(connection, ("BEGIN;" + sql + withoutChecksum + "COMMIT").c_str(), nullptr, nullptr, nullptr);
    const std::string reason = sqlite3_errmsg(connection);
    sqlite3_close(connection);
    if (result != SQLITE_OK)
        throw std::runtime_error(file + ": " + reason);
    // So that the first click does not wait for the end of a change that is going on.
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
}

double rowsOf(const std::string& file, const std::string& table)
{
    double rows = 0;
    walk(file, "SELECT count(*) FROM " + table, {}, [&rows](sqlite3_stmt* row) {
        rows = sqlite3_column_double(row, 0);
        return true;
    });
    return rows;
}

// --- The measurement ---

/// Refuses to measure a click that selects nothing, or bare calls that find another valve than the click. Gives the
/// seconds of this click, the first one on its file: it pays for the check of the whole file.
double check(const std::string& file, const Duty& duty, Program& program)
{
    const auto start = Clock::now();
    cmdCalcFlowRate_Click(program.sizing);
    const std::chrono::duration<double> first = Clock::now() - start;
    const SizingState& state = program.state;
    if (program.screen.caption(Label::lblCV).empty())
        throw std::runtime_error(std::string(duty.name) + ": the click selects no valve");
    const Valve clicked{duty.tankTable ? state.BreathingFlow : 0, static_cast<double>(state.SelectedCv),
                        static_cast<double>(state.MaxValveCap), state.ValveBodySize};
    if (clicked != bareCalls(file, duty, state.ShownTotalFlow))
        throw std::runtime_error(std::string(duty.name) + ": the bare calls find another valve than the click");
    return first.count();
}

void measure(benchmark::State& run, const std::string& file, const Duty& duty, Program& program, double first)
{
    std::chrono::duration<double> click{};
    std::chrono::duration<double> bare{};
    const double flow = program.state.ShownTotalFlow;
    for ([[maybe_unused]] auto turn : run) {
        const auto start = Clock::now();
        cmdCalcFlowRate_Click(program.sizing);
        const auto clicked = Clock::now();
        benchmark::DoNotOptimize(bareCalls(file, duty, flow));
        bare += Clock::now() - clicked;
        click += clicked - start;
        run.SetIterationTime(std::chrono::duration<double>(clicked - start).count());
    }
    run.counters["bare_us"] = bare.count() * 1e6 / static_cast<double>(run.iterations());
    run.counters["ratio"] = click / bare;
    run.counters["first_us"] = first * 1e6;
    run.counters["rows"] = rowsOf(file, duty.setup.ValveTable);
}

/// A list with the same row again and again.
std::string listOf(const Duty& duty, int rows)
{
    const SizingState& setup = duty.setup;
    std::string row = setup.ValveModel + ',' + setup.ValveType + ',' + setup.SizingMethod + ',' + setup.UnitSystem +
                      ',' + setup.PressUnits;
    for (const Box box : {Box::txtPumpRate, Box::txtPressure, Box::txtTankVolume, Box::txtSpecGrav, Box::txtFlashPoint})
        row += ',' + duty.boxes.at(box);
    std::string text = "Valve Model,Valve Type,Sizing Method,Units of Measure,Units of Pressure,Pump Rate,Pressure,"
                       "Tank Volume,Specific Gravity,Flash Point\n";
    for (; rows > 0; --rows)
        text += row + '\n';
    return text;
}

/// List and clicks take turns by ten rows.
void measureList(benchmark::State& run, const std::string& file, const Duty& duty, Program& program)
{
    constexpr int rows = 1000;
    const std::string text = listOf(duty, rows);
    std::chrono::duration<double> inList{};
    std::chrono::duration<double> clicks{};
    for ([[maybe_unused]] auto turn : run) {
        const auto before = inList;
        std::istringstream in(text);
        auto start = Clock::now();
        DutyList list(in, file);
        for (int row = 0; row < rows; ++row) {
            benchmark::DoNotOptimize(list.answer(list.next().value()));
            if (row % 10 != 9)
                continue;
            const auto sized = Clock::now();
            for (int click = 0; click < 10; ++click)
                cmdCalcFlowRate_Click(program.sizing);
            const auto clicked = Clock::now();
            inList += sized - start;
            clicks += clicked - sized;
            start = clicked;
        }
        run.SetIterationTime((inList - before).count() / rows);
    }
    run.counters["ratio"] = inList / clicks;
}

void measureAll(const std::filesystem::path& directory)
{
    constexpr int scales[] = {1, 10, 100};
    const auto fileOf = [&](const Duty& duty, int scale) {
        return (directory / (std::to_string(&duty - duties) + "-" + std::to_string(scale) + ".mdb")).string();
    };
    for (const Duty& duty : duties)
        for (const int scale : scales)
            makeDataFile(fileOf(duty, scale), duty, scale);

    std::list<Program> programs; // outlive the registered measurements
    for (const Duty& duty : duties)
        for (const int scale : scales) {
            const std::string name = std::string(duty.name) + "/" + std::to_string(scale) + "x";
            const std::string file = fileOf(duty, scale);
            Program& program = programs.emplace_back(duty, file);
            const double first = check(file, duty, program);
            benchmark::RegisterBenchmark(
                name.c_str(),
                [file, &duty, &program, first](benchmark::State& run) { measure(run, file, duty, program, first); })
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
            if (scale == 1)
                benchmark::RegisterBenchmark(
                    ("list, " + name).c_str(),
                    [file, &duty, &program](benchmark::State& run) { measureList(run, file, duty, program); })
                    ->UseManualTime()
                    ->Iterations(3)
                    ->Unit(benchmark::kMicrosecond);
        }
    benchmark::RunSpecifiedBenchmarks();
}

} // namespace

int main(int argc, char* argv[])
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    const auto directory = std::filesystem::temp_directory_path() / ("sizing-benchmarks-" + std::to_string(getpid()));
    int status = 0;
    try {
        std::filesystem::create_directory(directory);
        measureAll(directory);
    } catch (const std::exception& failure) {
        std::cerr << "benchmarks: " << failure.what() << '\n';
        status = 1;
    }
    std::filesystem::remove_all(directory);
    return status;
}

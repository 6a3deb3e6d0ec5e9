// Compares the time of a click on "&Select Valve Size" with that of the bare SQLite calls that it
// needs at least.
//
// Each line is one duty on data files of 1, 10 and 100 times the shipped rows. Its time is that of
// the whole click. Its counters are the time of the bare calls in microseconds, the ratio of the
// two, and the time of the first click, which checks the file. Click and bare calls take turns, so
// that both meet the same machine. For medians: benchmarks --benchmark_repetitions=7
// --benchmark_report_aggregates_only=true
//
// The lines that begin with "list" size a list of a thousand rows of the duty, CSV included. Their
// ratio is that of a row to a click.

#include "base/checked_math.h"
#include "base/number_text.h"
#include "capacity/capacity_store.h"
#include "engine/fresh_sizing.h"
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

namespace
{

using Clock = std::chrono::steady_clock;

/// A duty of Series 63 with the blanketing gas that its capacity table is for: its flows are those
/// of the table.
struct Duty
{
    const char* name;
    const Offer& offer;
    const char* method;
    const char* pumpRate;
    double pressure;
    double tankVolume;
    const char* flashPoint;
    const char* tankTable; ///< read for its DepadHFP; nullptr: the tank is too small for a table
    double nextCv;         ///< the next of the series, when the first choice falls short; else 0
};

constexpr const Offer& padOffer = *findOffer(choice::series63, choice::pad, "PSI");
constexpr const Offer& depadOffer = *findOffer(choice::series63, choice::depad, "mbar");
const Duty duties[] = {
    {"pad", padOffer, choice::api2000, "100", 60, 10000, "", nullptr, 0},
    {"pad, Cv stepped up", padOffer, choice::directDisplacement, "700", 65, 0, "", nullptr, 4},
    {"depad, large tank", depadOffer, choice::api2000, "200", 100, 8500, "60", "MetriclargeTank", 0},
};

constexpr int tankDepadHfp = 2; // column of both large-tank tables

// --- The click ---

/// The program without its windows, at one duty.
struct Program
{
    const Duty& duty;
    std::string file;
    NumberText numbers;
    CapacityStore store{file, numbers};
    FreshSizing sizing{duty.offer, duty.method, numbers};
    std::chrono::duration<double> first{}; ///< click on the file: it checks the whole file

    Program(const Duty& ofDuty, std::string onFile) : duty(ofDuty), file(std::move(onFile))
    {
        sizing.screen.boxes[Box::txtPumpRate] = duty.pumpRate;
        sizing.screen.boxes[Box::txtPressure] = numbers.general(duty.pressure);
        sizing.screen.boxes[Box::txtTankVolume] = numbers.general(duty.tankVolume);
        sizing.screen.boxes[Box::txtFlashPoint] = duty.flashPoint;
    }
    Program(const Program&) = delete; // the store refers to the number texts

    void click() { sizing.click(numbers, store); }
};

// --- The bare calls ---

/// Opens the data file and hands the rows of `sql` to `isLast` until that gives true. Binds `cv` if
/// there is one.
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

/// Walks to the first row with at least `key` in column 0 and more than `flow` in `column`. Gives
/// the value of `column` at `key`, on the straight line between that row and the row before it.
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

/// The opens, queries and walks of one click at `duty`, for the total flow that the click showed.
Valve bareCalls(const std::string& file, const Duty& duty, double flow)
{
    const std::string name = duty.offer.valveTable;
    const std::string table =
        "SELECT * FROM \"" + name + "\" INDEXED BY \"" + name + ".Index\" ORDER BY Pressure, flow";
    const std::string capacity = "Select * FROM " + name + " WHERE CV = ?1 ORDER BY Pressure ASC, flow ASC";
    const auto atFirstRowAbove = [&](double wanted, auto take) {
        walk(file, table, {}, [&](sqlite3_stmt* row) {
            if (sqlite3_column_double(row, 0) < duty.pressure || sqlite3_column_double(row, 1) <= wanted)
                return false;
            take(row);
            return true;
        });
    };

    Valve valve;
    const auto takeCv = [&valve](sqlite3_stmt* row) { valve.cv = sqlite3_column_double(row, 3); };
    const auto takeSize = [&valve](sqlite3_stmt* row) {
        valve.bodySize = reinterpret_cast<const char*>(sqlite3_column_text(row, 2));
    };
    if (duty.tankTable)
        valve.breathing =
            interpolated(file, std::string("Select * FROM ") + duty.tankTable, {}, duty.tankVolume, tankDepadHfp, -1);
    atFirstRowAbove(flow, takeCv);
    atFirstRowAbove(flow, takeSize);
    valve.capacity = toWhole(interpolated(file, capacity, valve.cv, duty.pressure, 1, flow));
    if (duty.nextCv > 0) {
        valve.cv = duty.nextCv;
        valve.capacity = toWhole(interpolated(file, capacity, valve.cv, duty.pressure, 1, flow));
        atFirstRowAbove(valve.capacity, takeSize);
    }
    return valve;
}

// --- The data files ---

/// Adds rows on the straight lines between those of a table, up to {scale} times its rows. No row
/// is added in the gap around {at}: there, a click finds the same rows as before.
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
    std::string sql = fill(fillGaps, {{"{table}", duty.offer.valveTable},
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
    // The checksum does not know the added rows.
    sql = "BEGIN;" + sql + "DROP TABLE Checksum; PRAGMA application_id = 0; COMMIT";
    sqlite3* connection = nullptr;
    sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READWRITE, nullptr);
    const int result = sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr);
    const std::string reason = sqlite3_errmsg(connection);
    sqlite3_close(connection);
    if (result != SQLITE_OK)
        throw std::runtime_error(file + ": " + reason);
    // The first click would wait for a file that was changed a moment ago.
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
}

// --- The measurement ---

/// Clicks for the first time. Throws when the click selects no valve, or when the bare calls find
/// another one.
void check(Program& program)
{
    const auto start = Clock::now();
    program.click();
    program.first = Clock::now() - start;
    const Duty& duty = program.duty;
    const SizingState& state = program.sizing.state;
    if (program.sizing.screen.caption(Label::lblCV).empty())
        throw std::runtime_error(std::string(duty.name) + ": the click selects no valve");
    const Valve clicked{duty.tankTable ? state.BreathingFlow : 0, static_cast<double>(state.SelectedCv),
                        static_cast<double>(state.MaxValveCap), state.ValveBodySize};
    if (clicked != bareCalls(program.file, duty, state.ShownTotalFlow))
        throw std::runtime_error(std::string(duty.name) + ": the bare calls find another valve than the click");
}

void measure(benchmark::State& run, Program& program)
{
    std::chrono::duration<double> click{};
    std::chrono::duration<double> bare{};
    const double flow = program.sizing.state.ShownTotalFlow;
    for ([[maybe_unused]] auto turn : run) {
        const auto start = Clock::now();
        program.click();
        const auto clicked = Clock::now();
        benchmark::DoNotOptimize(bareCalls(program.file, program.duty, flow));
        bare += Clock::now() - clicked;
        click += clicked - start;
        run.SetIterationTime(std::chrono::duration<double>(clicked - start).count());
    }
    run.counters["bare_us"] = bare.count() * 1e6 / static_cast<double>(run.iterations());
    run.counters["ratio"] = click / bare;
    run.counters["first_us"] = program.first.count() * 1e6;
}

/// A list with the same row again and again.
std::string listOf(const Duty& duty, int rows)
{
    const Offer& offer = duty.offer;
    const NumberText numbers;
    const std::string row = std::string(offer.valveModel) + ',' + offer.valveType + ',' + duty.method + ',' +
                            offer.unitSystem + ',' + offer.pressUnits + ',' + duty.pumpRate + ',' +
                            numbers.general(duty.pressure) + ',' + numbers.general(duty.tankVolume) + ',' +
                            duty.flashPoint + '\n';
    std::string text = "Valve Model,Valve Type,Sizing Method,Units of Measure,Units of Pressure,Pump Rate,Pressure,"
                       "Tank Volume,Flash Point\n";
    for (; rows > 0; --rows)
        text += row;
    return text;
}

/// The list and as many clicks take turns.
void measureList(benchmark::State& run, Program& program)
{
    constexpr int rows = 1000;
    const std::string text = listOf(program.duty, rows);
    std::chrono::duration<double> inList{};
    std::chrono::duration<double> clicks{};
    for ([[maybe_unused]] auto turn : run) {
        std::istringstream in(text);
        const auto start = Clock::now();
        DutyList list(in, program.file);
        while (const std::optional<SizedDuty> row = list.next())
            benchmark::DoNotOptimize(list.answer(*row));
        const auto sized = Clock::now();
        for (int click = 0; click < rows; ++click)
            program.click();
        clicks += Clock::now() - sized;
        inList += sized - start;
        run.SetIterationTime(std::chrono::duration<double>(sized - start).count() / rows);
    }
    run.counters["ratio"] = inList / clicks;
}

void measureAll(const std::filesystem::path& directory)
{
    std::list<Program> programs; // they are used until the last measurement
    for (const Duty& duty : duties)
        for (const int scale : {1, 10, 100}) {
            const std::string name = std::string(duty.name) + "/" + std::to_string(scale) + "x";
            const std::string file = (directory / (std::to_string(programs.size()) + ".mdb")).string();
            makeDataFile(file, duty, scale);
            Program& program = programs.emplace_back(duty, file);
            check(program);
            benchmark::RegisterBenchmark(name.c_str(), [&program](benchmark::State& run) { measure(run, program); })
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
            if (scale == 1)
                benchmark::RegisterBenchmark(("list, " + name).c_str(),
                                             [&program](benchmark::State& run) { measureList(run, program); })
                    ->UseManualTime()
                    ->Iterations(5)
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

#pragma once

#include "capacity/capacity_store.h"
#include "capacity/table_lookups.h"
#include "capacity/valve_results.h"
#include "engine/fresh_sizing.h"
#include "support/temporary_directory.h"
#include "tables/build_command.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <sstream>
#include <string>

// Sizings on the nominal tables, and their figures as the user guide writes them.

inline const NumberText numbers;

inline CapacityStore& nominalTables()
{
    static const TemporaryDirectory directory;
    static const std::string file = (directory.path / "capacities.mdb").string();
    std::ostringstream said;
    static const int status = buildCapacities({SIZING_NOMINAL_DIR, file}, said, said);
    EXPECT_EQ(status, 0) << said.str();
    static CapacityStore store(file, numbers);
    store.keepFile();
    return store;
}

inline std::string text(double value)
{
    return numbers.general(value); // 15 digits
}
inline std::string text(float value)
{
    return numbers.general(value); // 7 digits
}
inline std::string text(const std::string& value)
{
    return value;
}

/// The figures of a row of the guide, in their order.
template <typename... Value>
std::string figures(const Value&... value)
{
    std::string all;
    ((all += (all.empty() ? "" : " ") + text(value)), ...);
    return all;
}

/// The figures in a line of the guide, without those in names (API-2000, m3, psi_Pad) and the numbers of steps.
inline std::string figuresIn(const std::string& line)
{
    static const std::regex names(R"(^\d+\. |step \d|API-2000|Series \d+)");
    static const std::regex figure(R"((^|[^A-Za-z0-9_])(\d[\d,]*(\.\d+)?))");
    const std::string rest = std::regex_replace(line, names, "");
    std::string all;
    for (std::sregex_iterator found(rest.begin(), rest.end(), figure), end; found != end; ++found)
        all += (all.empty() ? "" : " ") + std::regex_replace((*found)[2].str(), std::regex(","), "");
    return all;
}

using Entries = std::map<Box, double>;

/// A duty after one press of "&Select Valve Size".
struct Duty : FreshSizing
{
    Duty(const char* model, const char* type, const char* method, const std::string& pressUnits, const Entries& entries)
        : FreshSizing(*findOffer(model, type, pressUnits), method, numbers)
    {
        for (const auto& [box, value] : entries)
            screen.boxes[box] = text(value);
        click(numbers, nominalTables());
    }
    SizingContext context() { return {state, screen, messages, numbers, nominalTables()}; }
    double tableFlow(double flow) { return ::tableFlow(context(), flow); }
    double tableCapacity()
    {
        SizingContext sizing = context();
        const auto flow = ::tableFlow(sizing, state.ShownTotalFlow);
        return state.ValveType == choice::pad ? modLookupSCFHPad(sizing, state.InputPressure, flow)
                                              : modLookupSCFHDepad(sizing, state.InputPressure, flow);
    }
};

/// The rows of a table on both sides of `x`.
struct RowsAround
{
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;

    RowsAround(const std::string& query, const char* key, const char* value, double x)
    {
        nominalTables().beginClick();
        CapacityRows rows = nominalTables().query(query, {key, value});
        for (; rows.number(std::size_t{0}) < x; rows.next()) {
            x1 = rows.number(std::size_t{0});
            y1 = rows.number(std::size_t{1});
        }
        x2 = rows.number(std::size_t{0});
        y2 = rows.number(std::size_t{1});
    }
    explicit RowsAround(const SizingState& state)
        : RowsAround("Select * FROM " + state.ValveTable + " WHERE CV = " + text(state.SelectedCv) +
                         " ORDER BY Pressure ASC, flow ASC",
                     "Pressure", "flow", state.InputPressure)
    {
    }

    /// The figures of the straight line at `x`, as the guide writes it.
    std::string line(double x) const { return figures(y2, x2, x, x2, x1, y2, y1); }
};

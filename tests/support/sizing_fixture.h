#pragma once

#include "app/sizing_state.h"
#include "base/number_text.h"
#include "base/sizing_context.h"
#include "capacity/capacity_store.h"
#include "engine/plain_screen.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <string>

/// A sizing on small tables of its own: a data file in a directory that goes with the test.
class SizingTest : public testing::Test
{
protected:
    /// Runs SQL on the data file, which it creates.
    void sql(const std::string& text)
    {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(file.string().c_str(), &database), SQLITE_OK);
        char* error = nullptr;
        EXPECT_EQ(sqlite3_exec(database, text.c_str(), nullptr, nullptr, &error), SQLITE_OK) << text << ": " << error;
        sqlite3_free(error);
        sqlite3_close(database);
        std::error_code none; // as if the change were long ago: a click waits while a file changes
        std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1),
                                         none);
    }

    /// A capacity table with its index; `rows` as SQL values (Pressure, flow, Bodysize, CV).
    void capacityTable(const std::string& name, const std::string& rows)
    {
        sql("CREATE TABLE " + name + " (Pressure REAL, flow REAL, Bodysize TEXT, CV REAL);" + //
            "CREATE INDEX \"" + name + ".Index\" ON " + name + " (Pressure, flow);" +         //
            "INSERT INTO " + name + " VALUES " + rows);
        sizing.state.ValveTable = name;
    }

    std::string comments() const { return screen.caption(Label::lblComments); }

    const TemporaryDirectory temporary;
    const std::filesystem::path& directory = temporary.path;
    const std::filesystem::path file = directory / "capacities.mdb";
    SizingState state;
    PlainScreen screen;
    RecordedMessages messages;
    NumberText numbers;
    CapacityStore store{file.string(), numbers};
    SizingContext sizing{state, screen, messages, numbers, store};
};

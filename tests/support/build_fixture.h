#pragma once

#include "support/temporary_directory.h"
#include "tables/build_command.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

/// `build_capacities` on a copy of the nominal tables; an output file is there before.
class BuildCapacities : public testing::Test
{
protected:
    BuildCapacities()
    {
        fs::create_directory(root / "out");
        fs::copy(SIZING_NOMINAL_DIR, root / "in");
        write(database, before);
    }

    static std::string contents(const fs::path& file)
    {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static void write(const fs::path& file, const std::string& text) { std::ofstream(file, std::ios::binary) << text; }
    auto filesBesideOutput() const { return std::distance(fs::directory_iterator(root / "out"), {}); }

    int command(const std::vector<std::string>& arguments)
    {
        std::ostringstream out;
        const int status = buildCapacities(arguments, out, out);
        messages = out.str();
        return status;
    }
    int build(const std::string& option = "")
    {
        std::vector<std::string> arguments = {(root / "in").string(), database.string()};
        if (!option.empty())
            arguments.insert(arguments.begin(), option);
        return command(arguments);
    }

    /// Whether a finding that begins with `place` names `words`.
    bool reported(const std::string& place, const std::string& words) const
    {
        std::istringstream lines(messages);
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with(place) && line.find(words) != std::string::npos)
                return true;
        return false;
    }

    /// A refusal leaves an existing output file, and nothing else, in the output directory.
    void expectRefused(const std::string& where, const std::string& option = "")
    {
        EXPECT_EQ(build(option), 1) << where << '\n' << messages;
        EXPECT_TRUE(contents(database) == before) << where << ": the file was changed";
        EXPECT_EQ(filesBesideOutput(), 1) << where;
    }

    /// Runs SQL on the data file; gives what was wrong.
    std::string run(const std::string& sql) const
    {
        sqlite3* connection = nullptr;
        sqlite3_open(database.string().c_str(), &connection);
        sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr);
        const std::string failure = sqlite3_errcode(connection) == SQLITE_OK ? "" : sqlite3_errmsg(connection);
        sqlite3_close(connection);
        return failure;
    }

    /// The first column of the first row, as text.
    std::string query(const std::string& sql) const
    {
        sqlite3* connection = nullptr;
        sqlite3_open_v2(database.string().c_str(), &connection, SQLITE_OPEN_READONLY, nullptr);
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(connection, sql.c_str(), -1, &statement, nullptr);
        std::string value = std::string("no row: ") + sqlite3_errmsg(connection);
        if (sqlite3_step(statement) == SQLITE_ROW && sqlite3_column_text(statement, 0))
            value = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
        sqlite3_finalize(statement);
        sqlite3_close(connection);
        return value;
    }

    const TemporaryDirectory temporary;
    const fs::path& root = temporary.path;
    const std::string before = {"SQLite format 3\0the file of before", 34};
    fs::path database = root / "out" / "capacities.mdb";
    std::string messages;
};

#include "capacity_database.h"
#include "support/cases.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

namespace
{

class BuildCapacities : public testing::Test
{
protected:
    BuildCapacities()
    {
        fs::create_directory(root / "out");
        fs::copy(SIZING_DATA_DIR, root / "in");
        write(database, "the file of before");
    }

    static std::string contents(const fs::path& file)
    {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static void write(const fs::path& file, const std::string& text) { std::ofstream(file, std::ios::binary) << text; }
    auto filesBesideOutput() const { return std::distance(fs::directory_iterator(root / "out"), {}); }

    int build()
    {
        std::ostringstream out;
        const int status = buildCapacities({(root / "in").string(), database.string()}, out);
        messages = out.str();
        return status;
    }

    /// Whether a finding that begins with `place` names `words`.
    bool reported(const std::string& place, const std::string& words) const
    {
        std::istringstream lines(messages);
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with(place + ": ") && line.find(words) != std::string::npos)
                return true;
        return false;
    }

    /// A refusal leaves an existing output file, and nothing else, in the output directory.
    void expectRefused(const std::string& where)
    {
        EXPECT_EQ(build(), 1) << where << '\n' << messages;
        EXPECT_EQ(contents(database), "the file of before") << where;
        EXPECT_EQ(filesBesideOutput(), 1) << where;
    }

    /// The first column of the first row, as text.
    std::string query(const std::string& sql) const
    {
        sqlite3* connection = nullptr;
        sqlite3_open_v2(database.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr);
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
    fs::path database = root / "out" / "capacities.mdb";
    std::string messages;
};

/// Contents as the case file writes them: "|" ends a line, "\xBD" is that byte.
std::string unescaped(std::string text)
{
    for (std::size_t at = 0; at < text.size(); ++at)
        if (text[at] == '|')
            text[at] = '\n';
        else if (text.compare(at, 2, "\\x") == 0)
            text.replace(at, 4, 1, static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16)));
    return text;
}

/// Each row is a set of the shipped tables with one file replaced, and a finding that this must lead to.
TEST_F(BuildCapacities, FindsWhatTheCaseFileSays)
{
    for (const Case& row : readCases("wrong_tables.csv")) {
        const fs::path file = root / "in" / row["Case"];
        const std::string shipped = contents(file);
        fs::remove(file);
        if (row["Contents"] == "(directory)")
            fs::create_directory(file);
        else if (row["Contents"] != "(missing)")
            write(file, unescaped(row["Contents"]));
        if (row["Outcome"] == "refused") {
            expectRefused(row.where());
        } else {
            EXPECT_EQ(build(), 0) << row.where() << '\n' << messages;
            write(database, "the file of before");
        }
        EXPECT_TRUE(reported(row["Finding"], row["Words"])) << row.where() << '\n' << messages;
        fs::remove(file);
        write(file, shipped);
    }
}

TEST_F(BuildCapacities, ReadsWhatSpreadsheetsWrite)
{
    write(root / "in" / "psi_Pad.csv", "\xEF\xBB\xBF\"CV\",Bodysize,Pressure,flow\r\n"
                                       "0.2,\"1/2\"\"\",\"1\",1e1\r\n\r\n0.2,\"½\"\", NPT\",200,20");
    EXPECT_EQ(build(), 0) << messages;
    EXPECT_EQ(query("SELECT group_concat(Pressure || '|' || flow || '|' || Bodysize || '|' || CV, ' ') FROM psi_Pad"),
              "1.0|10.0|1/2\"|0.2 200.0|20.0|½\", NPT|0.2");
}

TEST_F(BuildCapacities, SaysWhyTheFileCannotBeWritten)
{
    rlimit before;
    getrlimit(RLIMIT_FSIZE, &before);
    const auto signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{20'000, before.rlim_max}; // as a full disk
    setrlimit(RLIMIT_FSIZE, &small);
    expectRefused("");
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, signalBefore);
    EXPECT_TRUE(reported(database.string() + ": error", "cannot be written")) << messages;

    for (const auto& [file, words] :
         {std::pair{root / "absent" / "capacities.mdb", "No such file or directory"}, {root / "out", "directory"}}) {
        database = file;
        EXPECT_EQ(build(), 1);
        EXPECT_TRUE(reported(database.string() + ": error", words)) << messages;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(root), {}), 2) << "a temporary file is left";
}

TEST_F(BuildCapacities, WantsExactlyTwoArguments)
{
    std::ostringstream out;
    EXPECT_EQ(buildCapacities({SIZING_DATA_DIR}, out), 2);
    EXPECT_TRUE(out.str().starts_with("usage:")) << out.str();
}

TEST_F(BuildCapacities, BuildsTheShippedTablesWithoutFindings)
{
    ASSERT_EQ(build(), 0) << messages;
    EXPECT_TRUE(messages.starts_with("build_capacities: errors: 0, warnings: 0;")) << messages;
    EXPECT_EQ(filesBesideOutput(), 1);
    for (const std::string table : {"psi_Pad", "kgcm2_Pad", "kpa_Pad", "psi_Depad", "inwc_Depad", "mbar_Depad"}) {
        const std::string from = " FROM " + table;
        EXPECT_EQ(query("SELECT DISTINCT typeof(Pressure) || typeof(flow) || typeof(Bodysize) || typeof(CV)" + from),
                  "realrealtextreal");
        EXPECT_EQ(query("SELECT group_concat(name) FROM pragma_index_info('" + table + ".Index')"), "Pressure,flow");
        EXPECT_EQ(query("SELECT count(*) = count(DISTINCT CV) * count(DISTINCT Pressure)" + from), "1") << table;
        // Flows rise strictly with pressure and with Cv.
        EXPECT_EQ(query("SELECT count(*)" + from + " a JOIN " + table +
                        " b ON a.flow >= b.flow AND (a.CV = b.CV AND a.Pressure < b.Pressure OR "
                        "a.Pressure = b.Pressure AND a.CV < b.CV)"),
                  "0");
    }
    // Worked by hand from the flow equation; the first flow is choked.
    EXPECT_EQ(query("SELECT flow FROM psi_Pad WHERE Pressure = 200 AND CV = 60"), "441400.0");
    EXPECT_EQ(query("SELECT flow FROM mbar_Depad WHERE Pressure = 193 AND CV = 90"), "932.2");
}

} // namespace

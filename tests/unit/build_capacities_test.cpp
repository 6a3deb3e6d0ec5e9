#include "capacity/cv_series.h"
#include "capacity_database.h"

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
        std::string name = (fs::temp_directory_path() / "capacities-XXXXXX").string();
        root = mkdtemp(name.data());
        database = root / "out" / "capacities.mdb";
        fs::create_directory(root / "out");
        fs::copy(SIZING_DATA_DIR, root / "in");
    }
    ~BuildCapacities() override { fs::remove_all(root); }

    static std::string contents(const fs::path& file)
    {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    static void write(const fs::path& file, const std::string& text) { std::ofstream(file, std::ios::binary) << text; }

    /// Gives one of the shipped tables other contents.
    void setTable(const std::string& file, const std::string& text) const { write(root / "in" / file, text); }

    int build()
    {
        std::ostringstream out;
        const int status = buildCapacities({(root / "in").string(), database.string()}, out);
        messages = out.str();
        return status;
    }

    /// Whether a finding that begins with `place` names `reason`.
    bool reported(const std::string& place, const std::string& reason) const
    {
        std::istringstream lines(messages);
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with(place + ": ") && line.find(reason) != std::string::npos)
                return true;
        return false;
    }

    auto filesBesideOutput() const { return std::distance(fs::directory_iterator(root / "out"), {}); }

    /// Builds, expecting a refusal that leaves an existing output file, and nothing else, in the output directory.
    void expectRefusal()
    {
        write(database, "the file of before");
        EXPECT_EQ(build(), 1) << messages;
        EXPECT_EQ(contents(database), "the file of before");
        EXPECT_EQ(filesBesideOutput(), 1);
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

    fs::path root;
    fs::path database;
    std::string messages;
};

const std::string valveHeader = "Pressure,flow,Bodysize,CV\n";
const std::string tankHeader = "TankVol,Pad,DepadHFP,DepadLFP\n";
const std::string tankEnd = "7560000,1,1,1\n";

TEST_F(BuildCapacities, RefusesWhatWouldMakeALookupWrong)
{
    const struct
    {
        const char* file;
        std::string text;
        const char* place;
        const char* reason;
    } cases[] = {
        {"psi_Pad.csv", "", "psi_Pad.csv:1: error", "header row is missing"},
        {"psi_Pad.csv", valveHeader, "psi_Pad.csv:1: error", "table is empty"},
        {"psi_Pad.csv", "Pressure,flow,CV\n1,1,1\n", "psi_Pad.csv:1: error", "column Bodysize is missing"},
        {"psi_Pad.csv", "pressure,flow,Bodysize,CV\n", "psi_Pad.csv:1: error", "unknown column \"pressure\""},
        {"psi_Pad.csv", "Pressure,flow,Bodysize,CV,CV\n", "psi_Pad.csv:1: error", "CV stands twice"},
        {"kpa_Pad.csv", valveHeader + "1,1,a,1\n2,1,a\n", "kpa_Pad.csv:3: error", "3 fields"},
        {"kpa_Pad.csv", valveHeader + "1,1,1/2\",1\n", "kpa_Pad.csv:2: error", "broken quoting"},
        {"kpa_Pad.csv", valveHeader + "1,1,\"1/2\" ,1\n", "kpa_Pad.csv:2: error", "broken quoting"},
        {"kpa_Pad.csv", valveHeader + "1,1,\"1/2,1\n2,1,a,1\n", "kpa_Pad.csv:2: error", "broken quoting"},
        {"mbar_Depad.csv", valveHeader + "x,1,a,1\n", "mbar_Depad.csv:2: error", "Pressure \"x\" is not a number"},
        {"mbar_Depad.csv", valveHeader + "1,\"1,5\",a,1\n", "mbar_Depad.csv:2: error", "\"1,5\" is not a number"},
        {"mbar_Depad.csv", valveHeader + "1,,a,1\n", "mbar_Depad.csv:2: error", "flow is empty"},
        {"mbar_Depad.csv", valveHeader + "1,0x1F,a,1\n", "mbar_Depad.csv:2: error", "not a number"},
        {"mbar_Depad.csv", valveHeader + "1,1,a, 1\n", "mbar_Depad.csv:2: error", "CV \" 1\" is not a number"},
        {"mbar_Depad.csv", valveHeader + "1,nan,a,1\n", "mbar_Depad.csv:2: error", "not a finite number"},
        {"mbar_Depad.csv", valveHeader + "1,inf,a,1\n", "mbar_Depad.csv:2: error", "not a finite number"},
        {"mbar_Depad.csv", valveHeader + "1,1e999,a,1\n", "mbar_Depad.csv:2: error", "not a finite number"},
        {"mbar_Depad.csv", valveHeader + "1,-0.5,a,1\n", "mbar_Depad.csv:2: error", "negative"},
        {"mbar_Depad.csv", valveHeader + "1,1,,1\n", "mbar_Depad.csv:2: error", "Bodysize is empty"},
        {"mbar_Depad.csv", valveHeader + "1,1,\xBD,1\n", "mbar_Depad.csv:2: error", "Bodysize is not UTF-8"},
        {"mbar_Depad.csv", valveHeader + "1,1,\xE2\x81,1\n", "mbar_Depad.csv:2: error", "Bodysize is not UTF-8"},
        // What a lookup by a single's seven digits, without an exponent, does not find; and 0, which is no valve.
        {"psi_Pad.csv", valveHeader + "1,1,a,0.2000000001\n", "psi_Pad.csv:2: error", "CV 0.2000000001 cannot"},
        {"psi_Pad.csv", valveHeader + "1,1,a,16777217\n", "psi_Pad.csv:2: error", "CV 16777217 cannot"},
        {"psi_Pad.csv", valveHeader + "1,1,a,1e-5\n", "psi_Pad.csv:2: error", "CV 1e-05 cannot"},
        {"psi_Pad.csv", valveHeader + "1,1,a,1e99\n", "psi_Pad.csv:2: error", "CV 1e+99 cannot"},
        {"psi_Pad.csv", valveHeader + "1,1,a,0\n", "psi_Pad.csv:2: error", "CV 0 cannot"},
        {"mbar_Depad.csv", valveHeader + "1,1,a,3\n2,1,a,3\n1.0,2,a,3.00\n", "mbar_Depad.csv:4: error",
         "duplicate of line 2"},
        {"USLargeTank.csv", tankHeader, "USLargeTank.csv:1: error", "table is empty"},
        {"USLargeTank.csv", tankHeader + "840000,1,1,one\n", "USLargeTank.csv:2: error", "DepadLFP \"one\""},
        {"USLargeTank.csv", tankHeader + "840001,1,1,1\n" + tankEnd, "USLargeTank.csv:2: error", "starts above 840000"},
        {"USLargeTank.csv", tankHeader + "840000,1,1,1\n7559999,1,1,1\n", "USLargeTank.csv:3: error",
         "ends below 7560000"},
        {"USLargeTank.csv", tankHeader + "9,1,1,1\n9,1,1,1\n" + tankEnd, "USLargeTank.csv:3: error", "ascending"},
        {"MetriclargeTank.csv", tankHeader + "3180,1,1,1\n30000,1,1,1\n", "MetriclargeTank.csv:2: error",
         "starts above 3179"},
        {"MetriclargeTank.csv", tankHeader + "3179,1,1,1\n29999,1,1,1\n", "MetriclargeTank.csv:3: error",
         "ends below 30000"},
    };
    for (const auto& bad : cases) {
        SCOPED_TRACE(std::string(bad.file) + " with " + bad.text);
        const std::string shipped = contents(root / "in" / bad.file);
        setTable(bad.file, bad.text);
        expectRefusal();
        EXPECT_TRUE(reported(bad.place, bad.reason)) << messages;
        setTable(bad.file, shipped);
    }
}

TEST_F(BuildCapacities, RefusesAMissingFileAndOneThatIsNoFile)
{
    fs::remove(root / "in" / "psi_Depad.csv");
    fs::remove(root / "in" / "psi_Pad.csv");
    fs::create_directory(root / "in" / "psi_Pad.csv");
    expectRefusal();
    EXPECT_TRUE(reported("psi_Depad.csv: error", "No such file")) << messages;
    EXPECT_TRUE(reported("psi_Pad.csv: error", "Is a directory")) << messages;
}

TEST_F(BuildCapacities, ReportsEveryFindingInOneRun)
{
    setTable("psi_Pad.csv", valveHeader + "x,-1,,1\n1,1,1/2\",1\n\"\n1\",1\n\n1,2,a,0.3\n1,3,a,0.3\n");
    setTable("kpa_Pad.csv", "Pressure,flow,Size,CV\r\n1,z,a,1\r\n");
    setTable("MetriclargeTank.csv", tankHeader + "5000,1,1,1\n4000,1,1,1\n");
    expectRefusal();
    for (const auto& [place, reason] : {std::pair{"psi_Pad.csv:2: error", "Pressure"},
                                        {"psi_Pad.csv:2: error", "flow \"-1\""},
                                        {"psi_Pad.csv:2: error", "Bodysize"},
                                        {"psi_Pad.csv:3: error", "broken quoting"},
                                        {"psi_Pad.csv:4: error", "2 fields"}, // this row takes two physical lines
                                        {"psi_Pad.csv:8: error", "duplicate of line 7"},
                                        {"psi_Pad.csv:7: warning", "outside the series"},
                                        {"kpa_Pad.csv:1: error", "unknown column \"Size\""},
                                        {"kpa_Pad.csv:2: error", "flow \"z\""},
                                        {"MetriclargeTank.csv:2: error", "starts above"},
                                        {"MetriclargeTank.csv:3: error", "ascending"},
                                        {"build_capacities", "errors: 12,"}})
        EXPECT_TRUE(reported(place, reason)) << reason << messages;
}

TEST_F(BuildCapacities, WarnsOfSuspiciousFiguresAndStillBuilds)
{
    // Two good rows for Cv 0.2 amid suspicious ones; the rows of a Cv need not stand together or in order.
    setTable("psi_Pad.csv", valveHeader + "200,20,a,0.2\n1,10,a,0.2\n1,10,a,0.4\n200,9,a,0.4\n"
                                          "1.5,10,a,1\n199,20,a,1\n0.5,10,a,0.3\n300,20,a,0.3\n");
    EXPECT_EQ(build(), 0);
    EXPECT_TRUE(reported("psi_Pad.csv:5: warning", "Cv 0.4: the flow falls"));
    EXPECT_TRUE(reported("psi_Pad.csv:6: warning", "Cv 1 begins at 1.5 PSI"));
    EXPECT_TRUE(reported("psi_Pad.csv:7: warning", "Cv 1 ends at 199 PSI"));
    EXPECT_TRUE(reported("psi_Pad.csv:8: warning", "Cv 0.3 is outside the series"));
    EXPECT_TRUE(reported("psi_Pad.csv:1: warning", "Cv 7.5")); // and the six others without a row
    EXPECT_TRUE(reported("build_capacities", "errors: 0, warnings: 11;")) << messages;
    EXPECT_EQ(query("SELECT count(*) FROM psi_Pad"), "8");
}

// The limits of a pad-only model must not be asked of a depad table in the same unit.
TEST_F(BuildCapacities, HoldsADepadTableToTheDepadRangeOnly)
{
    std::string table = valveHeader;
    for (const float cv : depadCvSeries)
        table += "0.07,1,a," + std::to_string(cv) + "\n2.8,2,a," + std::to_string(cv) + "\n";
    setTable("psi_Depad.csv", table);
    EXPECT_EQ(build(), 0);
    EXPECT_TRUE(reported("build_capacities", "warnings: 0;")) << messages;
}

TEST_F(BuildCapacities, ReadsWhatSpreadsheetsWrite)
{
    setTable("psi_Pad.csv", "\xEF\xBB\xBF\"CV\",Bodysize,Pressure,flow\r\n"
                            "0.2,\"1/2\"\"\",\"1\",1e1\r\n\r\n0.2,\"½\"\", NPT\",200,20");
    EXPECT_EQ(build(), 0) << messages;
    EXPECT_EQ(query("SELECT group_concat(Pressure || '|' || flow || '|' || Bodysize || '|' || CV, ' ') FROM psi_Pad"),
              "1.0|10.0|1/2\"|0.2 200.0|20.0|½\", NPT|0.2");
}

TEST_F(BuildCapacities, SaysWhyTheFileCannotBeWritten)
{
    database = root / "absent" / "capacities.mdb";
    EXPECT_EQ(build(), 1);
    EXPECT_TRUE(reported(database.string() + ": error", "No such file or directory")) << messages;

    database = root / "out"; // a directory
    fs::create_directory(database / "kept");
    EXPECT_EQ(build(), 1);
    EXPECT_TRUE(reported(database.string() + ": error", "directory")) << messages;
    EXPECT_EQ(std::distance(fs::directory_iterator(root), {}), 2) << "a temporary file is left";
}

TEST_F(BuildCapacities, LeavesNothingOfAFailedDiskWrite)
{
    rlimit before;
    getrlimit(RLIMIT_FSIZE, &before);
    const auto signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    write(database, "the file of before");
    const rlimit small{20'000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const int status = build();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, signalBefore);
    EXPECT_EQ(status, 1);
    EXPECT_TRUE(reported(database.string() + ": error", "cannot be written")) << messages;
    EXPECT_EQ(contents(database), "the file of before");
    EXPECT_EQ(filesBesideOutput(), 1);
}

TEST_F(BuildCapacities, WantsExactlyTwoArguments)
{
    std::ostringstream out;
    EXPECT_EQ(buildCapacities({SIZING_DATA_DIR}, out), 2);
    EXPECT_TRUE(out.str().starts_with("usage:")) << out.str();
}

TEST_F(BuildCapacities, BuildsTheShippedTablesWithoutFindings)
{
    write(database, "the file of before");
    ASSERT_EQ(build(), 0) << messages;
    EXPECT_TRUE(messages.starts_with("build_capacities: errors: 0, warnings: 0;")) << messages;
    EXPECT_EQ(filesBesideOutput(), 1);
    EXPECT_EQ(query("PRAGMA journal_mode"), "delete");

    const struct
    {
        std::string table;
        std::size_t cvs;
        const char* lowest;
        const char* highest;
    } valveTables[] = {
        {"psi_Pad", padCvSeries.size(), "1.0", "200.0"},     {"kgcm2_Pad", padCvSeries.size(), "0.07", "14.06"},
        {"kpa_Pad", padCvSeries.size(), "6.9", "1379.0"},    {"psi_Depad", depadCvSeries.size(), "0.07", "2.8"},
        {"inwc_Depad", depadCvSeries.size(), "2.0", "77.0"}, {"mbar_Depad", depadCvSeries.size(), "5.0", "193.0"},
    };
    for (const auto& [table, cvs, lowest, highest] : valveTables) {
        SCOPED_TRACE(table);
        const std::string from = " FROM " + table;
        EXPECT_EQ(query("SELECT min(Pressure)" + from), lowest);
        EXPECT_EQ(query("SELECT max(Pressure)" + from), highest);
        EXPECT_EQ(query("SELECT count(*) = " + std::to_string(cvs) + " * count(DISTINCT Pressure)" + from), "1");
        EXPECT_EQ(query("SELECT count(DISTINCT Pressure) BETWEEN 15 AND 25" + from), "1");
        // Flows rise strictly with pressure and with Cv.
        EXPECT_EQ(query("SELECT count(*)" + from + " a JOIN " + table +
                        " b ON a.flow >= b.flow AND (a.CV = b.CV AND a.Pressure < b.Pressure OR "
                        "a.Pressure = b.Pressure AND a.CV < b.CV)"),
                  "0");
        EXPECT_EQ(query("SELECT DISTINCT typeof(Pressure) || typeof(flow) || typeof(Bodysize) || typeof(CV)" + from),
                  "realrealtextreal");
        EXPECT_EQ(query("SELECT group_concat(name) FROM pragma_index_info('" + table + ".Index')"), "Pressure,flow");
    }
}

TEST_F(BuildCapacities, ShipsTheNominalFigures)
{
    ASSERT_EQ(build(), 0) << messages;
    const struct
    {
        const char* sql;
        const char* value;
    } figures[] = {
        // Worked by hand from the flow equation; the flow of the second is choked.
        {"SELECT flow FROM psi_Pad WHERE Pressure = 25 AND CV = 10", "13520.0"},
        {"SELECT flow FROM psi_Pad WHERE Pressure = 200 AND CV = 60", "441400.0"},
        {"SELECT flow FROM kpa_Pad WHERE Pressure = 172 AND CV = 45", "1628.0"},
        {"SELECT flow FROM kgcm2_Pad WHERE Pressure = 1.76 AND CV = 20", "725.0"},
        {"SELECT flow FROM psi_Depad WHERE Pressure = 2.8 AND CV = 280", "108300.0"},
        {"SELECT flow FROM inwc_Depad WHERE Pressure = 77 AND CV = 12", "4624.0"},
        {"SELECT flow FROM mbar_Depad WHERE Pressure = 193 AND CV = 90", "932.2"},
        {"SELECT group_concat(DISTINCT Bodysize) FROM psi_Pad", "1/2\",1\",2\",3\""},
        {"SELECT DISTINCT Bodysize FROM kpa_Pad WHERE CV = 0.4", "1/2\""},
        {"SELECT DISTINCT Bodysize FROM mbar_Depad WHERE CV = 17", "2\""},
        {"SELECT count(*) FROM USLargeTank WHERE DepadLFP = Pad", "16"},
        {"SELECT count(*) FROM MetriclargeTank WHERE DepadLFP = Pad", "16"},
        {"SELECT sum(TankVol) || '|' || sum(Pad) || '|' || sum(DepadHFP) FROM USLargeTank",
         "52290000.0|789000.0|478000.0"},
        {"SELECT sum(TankVol) || '|' || sum(Pad) || '|' || sum(DepadHFP) FROM MetriclargeTank",
         "190180.0|20541.0|12321.0"},
    };
    for (const auto& figure : figures)
        EXPECT_EQ(query(figure.sql), figure.value) << figure.sql;
}

} // namespace

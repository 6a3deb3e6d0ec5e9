#include "files/replacement_file.h"
#include "support/build_fixture.h"
#include "support/cases.h"
#include "tables/capacity_tables.h"

#include <cmath>
#include <regex>

namespace
{

/// A valve table with flows multiplied, "x~FACTOR~CV~DIGITS~": of the Cvs that the regular expression matches, or all;
/// rounded to four significant digits, or as many; in steps of 5 of the last one with "~5~" at the end.
std::string multiplied(const std::string& edit, const std::string& nominal)
{
    static const std::regex parts("x~([^~]*)~(?:([^~]+)~)?(?:~(\\d)~(5~)?)?");
    static const std::regex row("(\n[^,\n]*,)([^,\n]*)(,[^\n]*,)([^,\n]*)");
    std::smatch part;
    std::regex_match(edit, part, parts);
    const std::regex cv(part[2].matched ? part[2].str() : ".*");
    const int digits = part[3].matched ? std::stoi(part[3]) : 4;
    std::string edited = nominal.substr(0, nominal.find('\n'));
    for (std::sregex_iterator one(nominal.begin(), nominal.end(), row), none; one != none; ++one) {
        char flow[32];
        const double factor = std::regex_match((*one)[4].str(), cv) ? std::stod(part[1]) : 1;
        double value = std::stod((*one)[2]) * factor;
        if (const double step = 5 * std::pow(10, std::floor(std::log10(value)) - digits + 1); part[4].matched)
            value = std::round(value / step) * step;
        std::snprintf(flow, sizeof flow, "%.*g", digits, value);
        edited += (*one)[1].str() + flow + (*one)[3].str() + (*one)[4].str();
    }
    return edited + '\n';
}

/// Contents as the case file writes them: "|" ends a line, "\xBD" is that byte; or edits of the nominal file, regular
/// expressions like "s~from~to~ s~from~to~", or flows multiplied.
std::string contentsOf(std::string text, const std::string& nominal)
{
    if (text.starts_with("x~"))
        return multiplied(text, nominal);
    for (std::size_t at = 0; at < text.size(); ++at)
        if (text.compare(at, 2, "\\x") == 0)
            text.replace(at, 4, 1, static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16)));
        else if (text[at] == '|')
            text[at] = '\n';
    if (!text.starts_with("s~"))
        return text;
    std::string edited = nominal;
    static const std::regex edit("s~([^~]*)~([^~]*)~");
    for (std::sregex_iterator one(text.begin(), text.end(), edit), none; one != none; ++one) {
        std::string into = (*one)[2];
        for (const auto& [escaped, sign] : {std::pair{"\\n", '\n'}, {"\\r", '\r'}})
            for (std::size_t at = 0; (at = into.find(escaped, at)) != std::string::npos;)
                into.replace(at, 2, 1, sign);
        edited = std::regex_replace(edited, std::regex((*one)[1].str()), into);
    }
    return edited;
}

/// Gives a file the contents of a case, or takes it away.
void change(const fs::path& file, const std::string& into)
{
    std::ifstream in(file, std::ios::binary);
    const std::string nominal(std::istreambuf_iterator<char>(in), {});
    in.close();
    fs::remove(file);
    if (into == "(directory)")
        fs::create_directory(file);
    else if (into != "(missing)")
        std::ofstream(file, std::ios::binary) << contentsOf(into, nominal);
}

/// Each row is a set of the nominal tables with one file (or all valve tables, or those of a type) changed, and a
/// finding that this must lead to.
TEST_F(BuildCapacities, FindsWhatTheCaseFileSays)
{
    ASSERT_EQ(build(), 0) << messages;
    const std::string nominalBytes = contents(database);
    write(database, before);
    for (const Case& row : readCases("wrong_tables.csv")) {
        const std::string& changed = row["Case"];
        fs::remove_all(root / "in");
        fs::copy(SIZING_NOMINAL_DIR, root / "in");
        for (const ValveTableSpec& table : valveTableSpecs())
            if (changed == "all" || changed == "all " + std::string(table.valveType))
                change(root / "in" / (std::string(table.name) + ".csv"), row["Contents"]);
        if (!changed.starts_with("all"))
            change(root / "in" / changed, row["Contents"]);
        if (row["Outcome"] == "refused") {
            expectRefused(row.where(), row["Option"]);
        } else {
            EXPECT_EQ(build(row["Option"]), 0) << row.where() << '\n' << messages;
            EXPECT_EQ(contents(database) == nominalBytes, row["Outcome"] == "same") << row.where();
            write(database, before);
        }
        EXPECT_TRUE(reported(row["Finding"], row["Words"])) << row.where() << '\n' << messages.substr(0, 2000);
    }
}

TEST_F(BuildCapacities, GoesBothWays)
{
    ASSERT_EQ(build(), 0) << messages;
    const std::string built = contents(database);
    EXPECT_EQ(command({"--check", database.string()}), 0) << messages;
    EXPECT_EQ(command({"--export", database.string(), (root / "csv").string()}), 0) << messages;
    EXPECT_EQ(command({(root / "csv").string(), (root / "again.mdb").string()}), 0) << messages;
    EXPECT_TRUE(contents(root / "again.mdb") == built);
    EXPECT_EQ(command({"--export", "--decimal-comma", database.string(), (root / "comma").string()}), 0) << messages;
    EXPECT_TRUE(contents(root / "comma" / "kgcm2_Pad.csv").find("\n0,07;1,2450;\"1/2\"\"\";0,2\n") !=
                std::string::npos);
    EXPECT_EQ(command({(root / "comma").string(), (root / "again.mdb").string()}), 0) << messages;
    EXPECT_TRUE(contents(root / "again.mdb") == built);
    write(root / "csv" / "kpa_Pad.csv", "mine");
    EXPECT_EQ(command({"--export", database.string(), (root / "csv").string()}), 1);
    EXPECT_TRUE(reported((root / "csv" / "kpa_Pad.csv").string() + ": error", "no table is overwritten")) << messages;
    const fs::path roundabout = root / "none" / ".." / "csv"; // nothing is there to be seen until it is made
    EXPECT_EQ(command({"--export", database.string(), roundabout.string()}), 1);
#ifndef _WIN32 // where such a name is the same as one without the detour
    EXPECT_TRUE(reported(roundabout.string(), "it exists already")) << messages;
#endif
    EXPECT_EQ(contents(root / "csv" / "kpa_Pad.csv"), "mine");
}

/// As when two exports go to one directory.
TEST_F(BuildCapacities, AFileThatAppearsMeanwhileStays)
{
    const fs::path table = root / "out" / "psi_Pad.csv";
    {
        ReplacementFile late(table), later(table);
        late.write("late");
        later.write("later");
        late.putInFreePlace();
        try {
            later.putInFreePlace();
            ADD_FAILURE();
        } catch (const std::runtime_error& failure) {
            EXPECT_STREQ(failure.what(), "it exists already");
        }
    }
    EXPECT_EQ(contents(table), "late");
    EXPECT_EQ(filesBesideOutput(), 2) << "a temporary file is left";
}

/// Later editions of API 2000 let large tanks breathe in 4 V^0.7 Nm3/h (or up to 6.5 times V^0.7), and out 0.25 V^0.9.
TEST_F(BuildCapacities, BuildsLargeTankTablesOfALaterEdition)
{
    for (const auto& [name, cubicMeters, flowUnit] :
         {std::tuple{"USLargeTank.csv", 0.003785411784, 0.026793}, {"MetriclargeTank.csv", 1.0, 1.0}}) {
        std::string rows = "TankVol,Pad,DepadHFP,DepadLFP\n";
        for (double volume = 3000; volume <= 31000; volume += 1000) {
            const std::string in = std::to_string(6.5 * std::pow(volume, 0.7) / flowUnit);
            const std::string out = ',' + std::to_string(0.25 * std::pow(volume, 0.9) / flowUnit);
            rows += std::to_string(volume / cubicMeters) + ',' + in + out + out + '\n';
        }
        write(root / "in" / name, rows);
    }
    EXPECT_EQ(build(), 0) << messages;
    EXPECT_TRUE(reported("USLargeTank.csv:3: warning", "by the formula; look at the unit; a table of a later"))
        << messages;
}

TEST_F(BuildCapacities, RefusesATableTooLargeForTheProgram)
{
    std::string rows = "Pressure,flow,Bodysize,CV\n";
    for (int i = 1; i <= 142; ++i) // 142 squared is 20,164
        rows += std::to_string(i) + ',' + std::to_string(i) + ",a," + std::to_string(i) + '\n';
    write(root / "in" / "psi_Pad.csv", rows);
    expectRefused("filled", "--complete");
    EXPECT_TRUE(reported("psi_Pad.csv: error", "142 CVs at 147 pressures; expected at most 20000 rows")) << messages;
    for (int i = 0; i < 20'000; ++i)
        rows += "1,1,a,1\n";
    write(root / "in" / "psi_Pad.csv", rows);
    expectRefused("read");
    EXPECT_TRUE(reported("psi_Pad.csv:20002: error", "at most 20000 rows")) << messages;
}

/// What is wrong with a data file of somebody else's is found.
TEST_F(BuildCapacities, ChecksADataFile)
{
    constexpr const char* noChecksum = "DROP TABLE Checksum; PRAGMA application_id = 0;";
    const struct
    {
        const char* sql; ///< run on the nominal file
        int status;
        const char* place;
        const char* words;
    } cases[] = {
        {"", 0, "warning", "no table Checksum"},
        {"DROP INDEX \"psi_Pad.Index\"", 1, "psi_Pad: error", "no such index: psi_Pad.Index"},
        {"DROP TABLE mbar_Depad", 1, "mbar_Depad: error", "no table mbar_Depad"},
        {"ALTER TABLE kpa_Pad RENAME COLUMN CV TO Kv", 1, "kpa_Pad: error", "CV"},
        {"DELETE FROM USLargeTank", 1, "USLargeTank: error", "a table without rows"},
        {"UPDATE psi_Pad SET flow = NULL WHERE rowid = 5", 1, "psi_Pad:5: error", "flow is stored as null"},
        {"UPDATE psi_Pad SET Pressure = 'x' WHERE rowid = 6", 1, "psi_Pad:6: error", "Pressure is stored as text"},
        {"UPDATE psi_Pad SET Bodysize = x'00' WHERE rowid = 7", 1, "psi_Pad:7: error", "Bodysize is stored as blob"},
        {"UPDATE psi_Pad SET flow = 9 WHERE rowid = 320", 1, "psi_Pad:320: error", "a flow does not rise with the CV"},
        {"UPDATE psi_Pad SET Bodysize = '1' || char(0) WHERE rowid = 8", 1, "psi_Pad:8: error",
         "Bodysize has a control"},
        {"INSERT INTO psi_Pad WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) SELECT 1, 1, 'a', "
         "1 "
         "FROM n",
         1, "psi_Pad: error", "there are 20320; expected at most 20000 rows"},
        {"DROP TABLE kpa_Pad; CREATE VIEW kpa_Pad AS SELECT * FROM psi_Pad", 1, "kpa_Pad: error", "no plain table"},
    };
    ASSERT_EQ(build(), 0) << messages;
    const std::string built = contents(database);
    for (const auto& [sql, status, place, words] : cases) {
        write(database, built);
        EXPECT_EQ(run(std::string(noChecksum) + sql), "") << sql;
        EXPECT_EQ(command({"--check", database.string()}), status) << sql << '\n' << messages;
        EXPECT_TRUE(reported(database.string() + ": " + place, words)) << sql << '\n' << messages;
    }
    write(database, built.substr(0, built.size() - 4096));
    EXPECT_EQ(command({"--check", database.string()}), 1);
    EXPECT_TRUE(reported(database.string() + ": error",
                         "the program cannot read it: capacities.mdb is damaged: database disk image is malformed"))
        << messages;
    EXPECT_TRUE(reported("build_capacities", "errors: 1, warnings: 0;")) << messages;
    for (const auto& [file, words] : {std::pair{root / "absent", "No such file"}, {root / "out", "Is a directory"}}) {
        EXPECT_EQ(command({"--check", file.string()}), 1);
        EXPECT_TRUE(reported(file.string() + ": error", words)) << messages;
    }
}

TEST_F(BuildCapacities, IsCalledInOneOfItsWays)
{
    EXPECT_EQ(command({(root / "in").string()}), 2);
    EXPECT_TRUE(messages.starts_with("usage:")) << messages;
    EXPECT_EQ(command({"--chekc", database.string()}), 2);
    EXPECT_EQ(command({(root / "in").string(), "--complete"}), 2);
    EXPECT_EQ(command({"--check", "--complete", database.string()}), 2);
    EXPECT_EQ(command({(root / "in").string(), database.string(), "--label"}), 2);
    EXPECT_EQ(command({(root / "in").string(), "--label=a", database.string()}), 0) << messages;
    EXPECT_EQ(command({database.string(), "--check"}), 0) << messages;
    EXPECT_EQ(command({"--help"}), 0);
    std::ostream full(nullptr);
    EXPECT_EQ(buildCapacities({"--help"}, full, full), 1);
    EXPECT_EQ(command({"--version"}), 0);
    EXPECT_EQ(messages, "build_capacities " SIZING_VERSION "\n");
}

TEST_F(BuildCapacities, BuildsTheNominalTablesWithoutFindings)
{
    write(database, ""); // an empty file may be taken as well
    ASSERT_EQ(build(), 0) << messages;
    EXPECT_TRUE(messages.starts_with("build_capacities: errors: 0, warnings: 0;")) << messages;
    EXPECT_EQ(filesBesideOutput(), 1);
    for (const ValveTableSpec& spec : valveTableSpecs()) {
        const std::string table(spec.name);
        const std::string from = " FROM " + table;
        EXPECT_EQ(query("SELECT DISTINCT typeof(Pressure) || typeof(flow) || typeof(Bodysize) || typeof(CV)" + from),
                  "realrealtextreal");
        EXPECT_EQ(query("SELECT group_concat(name) FROM pragma_index_info('" + table + ".Index')"), "Pressure,flow");
    }
    // Worked by hand from the flow equation; the first flow is choked.
    EXPECT_EQ(query("SELECT flow FROM psi_Pad WHERE Pressure = 200 AND CV = 60"), "441400.0");
    EXPECT_EQ(query("SELECT flow FROM mbar_Depad WHERE Pressure = 193 AND CV = 90"), "932.2");
}

} // namespace

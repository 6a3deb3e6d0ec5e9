#include "support/cases.h"

#include "base/number_text.h"
#include "capacity/cv_series.h"
#include "csv_reader.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace
{

struct CaptionColumn
{
    const char* column;
    Label label;
};

constexpr CaptionColumn captionColumns[] = {
    {"Pump-Rate Flow", Label::lblPRFlow},
    {"Breathing Flow", Label::lblBRFlow},
    {"Total Flow Rate", Label::lblTotalFlow},
    {"S.G. of Flows", Label::lblSGGas},
    {"Flash or Boiling", Label::lblHFPLFP},
    {"Valve Coefficient", Label::lblCV},
    {"Max Valve Capacity", Label::lblMaxValveCapacity},
    {"S.G. of Capacity", Label::lblSGGas2},
    {"Valve Body Size", Label::lblValveBodySize},
    {"Capacity Utilized (%)", Label::lblPercentValveCapacity},
    {"Comments", Label::lblComments},
};

std::string valuesOf(std::span<const float> series)
{
    std::string values;
    for (const float cv : series)
        values += (values.empty() ? "(" : ",(") + NumberText().general(cv) + ")";
    return values;
}

std::string tablesSql()
{
    const struct
    {
        const char* table;
        const char* type;
        const char* pressures;
    } tables[] = {
        {"psi_Pad", choice::pad, "(1),(10),(25),(50),(100),(200)"},
        {"kgcm2_Pad", choice::pad, "(0.07),(1),(1.8),(5),(14.06)"},
        {"kpa_Pad", choice::pad, "(6.9),(100),(172),(500),(1379)"},
        {"psi_Depad", choice::depad, "(0.07),(0.5),(1),(2),(2.8)"},
        {"inwc_Depad", choice::depad, "(2),(10),(20),(50),(77)"},
        {"mbar_Depad", choice::depad, "(5),(25),(50),(100),(193)"},
    };
    std::string sql;
    for (const auto& [table, type, pressures] : tables)
        sql += std::string("CREATE TABLE ") + table + " (Pressure REAL, flow REAL, Bodysize TEXT, CV REAL);" +
               "WITH p(p) AS (VALUES " + pressures + "), c(cv) AS (VALUES " + valuesOf(cvSeries(type)) +
               ") INSERT INTO " + table +
               " SELECT p, 10.0 * cv * p, CASE WHEN cv < 0.5 THEN '1/2\"' WHEN cv < 5 THEN "
               "'1\"' WHEN cv < 25 THEN '2\"' ELSE '3\"' END, cv FROM p, c;" +
               "CREATE INDEX \"" + table + ".Index\" ON " + table + " (Pressure, flow);";
    for (const char* const table : {"USLargeTank", "MetriclargeTank"})
        sql += std::string("CREATE TABLE ") + table + " (TankVol REAL, Pad REAL, DepadHFP REAL, DepadLFP REAL);";
    return sql + "INSERT INTO USLargeTank VALUES (800000,20000,8000,16000), (1000000,25000,10000,20000),"
                 "(8000000,200000,80000,160000);"
                 "INSERT INTO MetriclargeTank VALUES (3000,375,150,300), (4000,500,200,400), (30000,3750,1500,3000);";
}

/// The data file in a directory of its own, which goes with the run.
struct TablesFile
{
    std::filesystem::path directory;
    std::string path;

    TablesFile()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "sizing-tables-XXXXXX").string();
        directory = mkdtemp(pattern.data());
        path = (directory / "capacities.mdb").string();
        sqlite3* database = nullptr;
        sqlite3_open(path.c_str(), &database);
        const int result = sqlite3_exec(database, tablesSql().c_str(), nullptr, nullptr, nullptr);
        sqlite3_close(database);
        if (result != SQLITE_OK)
            throw std::runtime_error("the tables of the tests are wrong");
    }
    ~TablesFile() { std::filesystem::remove_all(directory); }
};

} // namespace

std::vector<Case> readCases(const std::string& file)
{
    std::ifstream in(std::string(SIZING_CASES_DIR "/") + file, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(in), {});
    const std::vector<CsvRow> rows = readCsv(text);
    std::vector<Case> cases;
    for (std::size_t at = 1; at < rows.size(); ++at) {
        std::map<std::string, std::string> fields;
        if (rows[at].fields.size() != rows[0].fields.size())
            throw std::runtime_error(file + ":" + std::to_string(rows[at].line) + ": not as many fields as the header");
        for (std::size_t column = 0; column < rows[0].fields.size(); ++column)
            fields[rows[0].fields[column]] = rows[at].fields[column];
        cases.emplace_back(rows[at].line, std::move(fields));
    }
    if (cases.empty())
        throw std::runtime_error("no cases in " + file);
    return cases;
}

const std::string& testTables()
{
    static const TablesFile file;
    return file.path;
}

void expectOutcome(const Case& row, const MainScreen& screen, const RecordedMessages& messages)
{
    for (const auto& [column, label] : captionColumns)
        EXPECT_EQ(screen.caption(label), row[column]) << row.where() << ": " << column;
    std::string shown;
    for (const std::string& text : messages.texts)
        shown += (shown.empty() ? "" : " | ") + text;
    EXPECT_EQ(shown, row["Messages"]) << row.where();
}

#include "support/cases.h"

#include "files/csv_reader.h"
#include "support/temporary_directory.h"
#include "tables/capacity_tables.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

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

/// The data file in a directory of its own, which goes with the run.
struct TablesFile
{
    TemporaryDirectory directory;
    std::string path = (directory.path / "capacities.mdb").string();

    TablesFile()
    {
        std::string empty;
        std::string filled;
        for (const ValveTableSpec& table : valveTableSpecs()) {
            const std::string name(table.name);
            empty += "CREATE TABLE " + name + " (Pressure REAL, flow REAL, Bodysize TEXT, CV REAL);" +
                     "CREATE INDEX \"" + name + ".Index\" ON " + name + " (Pressure, flow);";
            filled += "INSERT INTO " + name + " SELECT p, 10.0 * cv * p, body, cv FROM valve, (SELECT " +
                      numberText(table.lowest) + " AS p UNION SELECT " + numberText(table.highest) +
                      ") WHERE type = '" + std::string(table.valveType) + "' AND NOT EXISTS (SELECT 1 FROM " + name +
                      ");";
        }
        sqlite3* database = nullptr;
        sqlite3_open(path.c_str(), &database);
        const int result =
            sqlite3_exec(database, (empty + caseText("tables.sql") + filled).c_str(), nullptr, nullptr, nullptr);
        sqlite3_close(database);
        if (result != SQLITE_OK)
            throw std::runtime_error("the tables of the tests are wrong");
    }
};

} // namespace

std::string caseText(const std::string& file)
{
    std::ifstream in(SIZING_CASES_DIR "/" + file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<Case> readCases(const std::string& file)
{
    std::ifstream in(SIZING_CASES_DIR "/" + file, std::ios::binary);
    CsvReader reader(in);
    CsvRow header;
    CsvRow row;
    reader.next(header);
    std::vector<Case> cases;
    while (reader.next(row)) {
        std::map<std::string, std::string> fields;
        if (row.fields.size() != header.fields.size())
            throw std::runtime_error(file + ":" + std::to_string(row.line) + ": not as many fields as the header");
        for (std::size_t column = 0; column < header.fields.size(); ++column)
            fields[header.fields[column]] = row.fields[column];
        cases.emplace_back(row.line, std::move(fields));
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

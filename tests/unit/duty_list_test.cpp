#include "lists/duty_list.h"
#include "lists/summary_files.h"
#include "report/file_name.h"
#include "support/cases.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

namespace
{

namespace fs = std::filesystem;

constexpr const char* sharedColumns[] = {"Pump-Rate Flow",     "Breathing Flow",  "Valve Coefficient",
                                         "Max Valve Capacity", "Valve Body Size", "Capacity Utilized (%)",
                                         "Comments",           "Messages"};

/// The rows of the answer to a list on the tables of the tests, by the names in its header.
std::vector<std::map<std::string, std::string>> answersTo(const std::string& text)
{
    std::istringstream in(text);
    DutyList list(in, testTables());
    std::istringstream headerIn(list.answerHeader());
    const char separator = list.answerHeader().find(';') != std::string::npos ? ';' : ',';
    CsvRow header;
    CsvReader(headerIn, separator).next(header);
    std::vector<std::map<std::string, std::string>> answers;
    while (const auto duty = list.next()) {
        std::istringstream rowIn(list.answer(*duty));
        CsvRow row;
        EXPECT_TRUE(CsvReader(rowIn, separator).next(row));
        EXPECT_EQ(row.fields.size(), header.fields.size());
        auto& answer = answers.emplace_back();
        for (std::size_t at = 0; at < header.fields.size(); ++at)
            answer[header.fields[at]] = row.fields.at(at);
    }
    EXPECT_EQ(answers.size(), list.rowCount());
    return answers;
}

/// Why a list as a whole is refused.
std::string refusalOf(const std::string& text, const std::string& dataFile = testTables())
{
    std::istringstream in(text);
    try {
        DutyList list(in, dataFile);
    } catch (const CsvProblem& problem) {
        return std::to_string(problem.line) + ": " + problem.what();
    } catch (const std::runtime_error& failure) {
        return failure.what();
    }
    return "none";
}

TEST(DutyList, SizesWhatTheCaseFileSays)
{
    const auto takesDefault = [](const Case& row) { return row["Specific Gravity"].empty(); };
    const auto hasNumbers = [](const Case& row) { // the others are refused before the click
        return std::ranges::all_of(entryColumns, [&](const EntryColumn& entry) {
            return row[entry.column].empty() || NumberText().parse(row[entry.column]);
        });
    };
    std::vector<Case> cases = readCases("sizings.csv");
    std::erase_if(cases, takesDefault);
    ASSERT_GT(cases.size(), 100U);
    std::string text;
    for (const char* const column :
         {"Units of Pressure", "Valve Type", "Sizing Method", "Units of Measure", "Valve Model"})
        text += std::string(column) + ';';
    for (const auto& [column, box] : entryColumns)
        text += std::string(column) + ';';
    for (const Case& row : cases) {
        text += '\n';
        for (const char* const column :
             {"Units of Pressure", "Valve Type", "Sizing Method", "Units of Measure", "Valve Model"})
            text += row[column] + ';';
        for (const auto& [column, box] : entryColumns)
            text += row[column] + ';';
    }
    const auto answers = answersTo(text);
    ASSERT_EQ(answers.size(), cases.size());
    for (std::size_t at = 0; at < cases.size(); ++at) {
        const Case& row = cases[at];
        if (!hasNumbers(row)) {
            EXPECT_NE(answers[at].at("Comments").find("is not a number"), std::string::npos) << row.where();
            continue;
        }
        for (const char* const column : sharedColumns)
            EXPECT_EQ(answers[at].at(column), row[column]) << row.where() << ": " << column;
        EXPECT_EQ(answers[at].at("Total Flow"), row["Total Flow Rate"]) << row.where();
        EXPECT_EQ(answers[at].at("Status"), !row["Messages"].empty()               ? "failed"
                                            : row["Capacity Utilized (%)"].empty() ? "refused"
                                                                                   : "sized")
            << row.where();
    }
}

TEST(DutyList, RefusesRowsThatCannotBeEntered)
{
    const struct
    {
        const char* row; ///< below "Valve Model,Valve Type,Units of Measure,Units of Pressure,Pump Rate,Notes"
        const char* comments;
    } cases[] = {
        {"Series 62,,,,1,", "Valve Model \"Series 62\": here it is Series 61 or Series 63"},
        {",depad,,,1,", "Valve Type \"depad\": here it is Pad"},
        {",,,kPa,1,", "Units of Pressure \"kPa\": here it is PSI"},
        {"SERIES 63,DEPAD,u.s. units,kPa,1,", "Units of Pressure \"kPa\": here it is PSI or in wc"},
        {",,,,1.5x,", "Pump Rate \"1.5x\" is not a number; here one is written like 1200.5"},
        {",,,,\"1,200\",", "Pump Rate \"1,200\" is not a number; here one is written like 1200.5"},
        {",,,,1,a,b", "7 fields where the header has 6"},
        {",,,,1,\"a\"b", "line 9: broken quoting; a text with a quotation mark is written like \"1/2\"\"\""},
        {" series 63\u00A0,,,,1", "Please enter Pressure and Pump-Rate information."},
    };
    std::string text = "Valve Model,Valve Type,Units of Measure,Units of Pressure,Pump Rate,Notes\n";
    for (const auto& [row, comments] : cases)
        text += std::string(row) + '\n';
    const auto answers = answersTo(text);
    ASSERT_EQ(answers.size(), std::size(cases));
    for (std::size_t at = 0; at < answers.size(); ++at) {
        EXPECT_EQ(answers[at].at("Comments"), cases[at].comments);
        EXPECT_EQ(answers[at].at("Status"), "refused");
    }
}

TEST(DutyList, RefusesListsThatCannotBeRead)
{
    EXPECT_EQ(refusalOf(""), "1: there is no header row with the names of the columns");
    EXPECT_TRUE(refusalOf("\nGas,Pumprate\n").starts_with("2: column 2, \"Pumprate\": a column is Tag Number, Valve"));
    EXPECT_EQ(refusalOf("Gas,Notes,gas\n"), "1: column 3, \"gas\": it stands twice");
    EXPECT_TRUE(refusalOf("Gas;Pressure\nx;1.5\ny;\u00A02,5 \n").starts_with("3: numbers are written in two ways"));
    EXPECT_EQ(refusalOf("Gas,Notes\nx,\"a\n\xBD\"\n"), "3: the text is not UTF-8: save it as CSV in UTF-8");
    const std::string longest(1 << 20, 'x');
    EXPECT_EQ(refusalOf("Gas\n" + longest), "none");
    EXPECT_EQ(refusalOf("Gas\n\n" + longest + 'x'), "3: a line of more than a million characters");
    EXPECT_EQ(refusalOf("Gas\n", "/nowhere"), "the valve tables cannot be read: nowhere is missing");
}

TEST(DutyList, SizesAllRowsOnOneFile)
{
    const TemporaryDirectory temporary;
    const fs::path file = temporary.path / "tables.mdb";
    fs::copy_file(testTables(), file);
    std::istringstream in("Pump Rate,Pressure,Tank Volume\n100,60,1000\n100,60,1000\n");
    DutyList list(in, file.string());
    EXPECT_FALSE(list.isDataFileReplaced());
    const std::string first = list.answer(*list.next());
    std::ofstream(file) << "another file";
    EXPECT_EQ(list.answer(*list.next()), first);
    EXPECT_TRUE(list.isDataFileReplaced());
    fs::remove(file);
    EXPECT_TRUE(list.isDataFileReplaced());
}

TEST(DutyList, AnswersAsTheListIsWritten)
{
    std::istringstream in("\xEF\xBB\xBFNotes;Pump Rate;Pressure;Tank Volume; gas\r\n"
                          "\"a;\"\"b\"\"\r\n\";12,5; 62,5;100;dry co2 \r\n\"x\"y\r\nz;1.000.000;.\r\n");
    DutyList list(in, testTables());
    EXPECT_TRUE(list.answerHeader().starts_with("\xEF\xBB\xBFNotes;Pump Rate;Pressure;Tank Volume; gas;Status;"));
    const auto duty = list.next();
    // 100 + 100 / 42 SCFH of carbon dioxide; 10 x 0.4 x 62.5 SCFH of nitrogen are 0.8 of that
    EXPECT_EQ(list.answer(*duty),
              "\"a;\"\"b\"\"\r\n\";12,5; 62,5;100;dry co2 ;sized;100;2,3;102;SCFH;0,4;\"1/2\"\"\";200;51;;\r\n");
    EXPECT_EQ(duty->sizing->screen.text(Box::cmbBlanketingGas), "Dry CO2");
    EXPECT_TRUE(list.answer(*list.next()).starts_with("\"\"\"x\"\"y\";;;;;refused;"));
    EXPECT_TRUE(list.answer(*list.next()).starts_with("z;1.000.000;.;;;refused;"));
}

/// A listed gas by any spelling; a gravity names its gas; any other name stays as it is.
TEST(DutyList, EntersTheGasAsTheScreenDoes)
{
    std::istringstream in("Gas,Specific Gravity\n AIR,\nArgon,\nArgon,1.52\n,0.6\n,0.61\nnitrogen,\n");
    DutyList list(in, testTables());
    for (const char* const entered :
         {"Air 1", "Argon 0.97", "Argon 1.52", "Natural Gas 0.6", " 0.61", "Nitrogen 0.97"}) {
        const PlainScreen screen = list.next()->sizing->screen;
        EXPECT_EQ(screen.text(Box::cmbBlanketingGas) + " " + screen.text(Box::txtSpecGrav), entered);
    }
}

TEST(SummaryFiles, HaveNamesThatAreSafeAndTheirOwn)
{
    EXPECT_EQ(fileNameOf("../T 1/2\"\n"), "_.._T 1_2__"); // no dot first
    for (const char* const device : {"com1 .x", "CON", "prn.", "Aux.pdf", "nul"})
        EXPECT_TRUE(fileNameOf(device).starts_with('_')) << device;
    EXPECT_EQ(fileNameOf("LPT\u00B3"), "_LPT\u00B3");
    EXPECT_EQ(fileNameOf("COMB"), "COMB");
    EXPECT_EQ(fileNameOf("T\u00851\u202Efdp\u2069\u00E4"), "T_1_fdp_\u00E4") << "characters that do not show";
    EXPECT_EQ(fileNameOf("T. "), "T");
    EXPECT_EQ(fileNameOf("\u200B# -"), "_# -");
    EXPECT_EQ(fileNameOf("-1") + fileNameOf(" 1"), "_-1_ 1");
    EXPECT_EQ(fileNameOf(std::string(98, 'a') + "\u20AC"), std::string(98, 'a')) << "a part of a character";

    const TemporaryDirectory temporary;
    const auto write = [&](SummaryFiles& files, const char* tag) {
        std::istringstream in(std::string("Tag Number,Pump Rate,Pressure,Tank Volume\n") + tag + ",10,60,100\n");
        DutyList list(in, testTables());
        auto duty = list.next();
        return files.write(list, *duty);
    };
    const auto pdf = [](const SummaryForm&) { return std::string("page"); };
    SummaryFiles files(temporary.path / "new", pdf, "today", false);
    for (const char* const tag : {"T-1", "t-1", ""})
        EXPECT_EQ(write(files, tag), "");
    for (const char* const name : {"T-1.pdf", "t-1 (2).pdf", "line 2.pdf"})
        EXPECT_TRUE(fs::exists(temporary.path / "new" / name)) << name;
    std::ofstream(temporary.path / "new" / "T-1.pdf.new-backup") << "somebody's own";
    const fs::path other = temporary.path / "new" / "other.pdf";
    const auto slowPdf = [&](const SummaryForm&) { // while it is made, another program writes a file of that name
        std::ofstream(other) << "somebody's own";
        return std::string("page");
    };
    SummaryFiles again(temporary.path / "new", slowPdf, "today", false);
    for (const char* const tag : {"T-1", "other"})
        EXPECT_NE(write(again, tag).find("it exists already"), std::string::npos) << tag;
    EXPECT_EQ(fs::file_size(other), 14U);
    SummaryFiles forced(temporary.path / "new", pdf, "today", true);
    EXPECT_EQ(write(forced, "T-1"), "");
    EXPECT_TRUE(fs::exists(temporary.path / "new" / "T-1.pdf.new-backup"));
}

} // namespace

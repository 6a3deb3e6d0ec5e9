#include "lists/duty_list.h"
#include "lists/words.h"
#include "support/cases.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
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

/// The whole answer.
std::string answerTo(const std::string& text)
{
    std::istringstream in(text);
    DutyList list(in, testTables());
    std::string answer = list.answerHeader();
    while (const auto duty = list.next())
        answer += list.answer(*duty);
    return answer;
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
    const auto canBeEntered = [](const Case& row) { // the others are refused before the click
        const auto gravity = NumberText().parse(row["Specific Gravity"]);
        return gravity && *gravity > 0 && std::ranges::all_of(entryColumns, [&](const EntryColumn& entry) {
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
        if (!canBeEntered(row)) {
            EXPECT_EQ(answers[at].at("Valve Coefficient") + answers[at].at("Messages"), "") << row.where();
            EXPECT_NE(answers[at].at("Comments"), "") << row.where();
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

/// The list of a case, whose lines end in "\\n".
std::string listOf(const Case& row)
{
    return std::regex_replace(row["List"], std::regex(R"(\\n)"), "\n");
}

/// What a case says, with the models, gases and pressure units that are offered in their places.
std::string saysOf(const Case& row)
{
    std::map<std::string, std::vector<std::string>> offered;
    for (const Model& model : models)
        offered["{models}"].push_back(model.name);
    for (const Gas& gas : gases)
        offered["{gases}"].push_back(gas.name);
    for (const Offer& offer : offers) {
        auto& units = offered["{units}"];
        if (std::ranges::find(units, offer.pressUnits) == units.end())
            units.push_back(offer.pressUnits);
        offered[std::string("{units of ") + offer.valveModel + ", " + offer.valveType + ", " + offer.unitSystem + '}']
            .push_back(offer.pressUnits);
    }
    std::string says = row["Says"];
    for (const auto& [place, names] : offered)
        if (const auto at = says.find(place); at != std::string::npos)
            says.replace(at, place.size(), listed(names));
    return says;
}

TEST(DutyList, SaysWhatTheCaseFileSays)
{
    for (const Case& row : readCases("lists.csv")) {
        const std::string& where = row["Where"];
        if (where == "list") {
            EXPECT_EQ(refusalOf(listOf(row)), saysOf(row)) << row.where();
            continue;
        }
        EXPECT_EQ(refusalOf(listOf(row)), "none") << row.where();
        std::istringstream in(listOf(row));
        DutyList list(in, testTables());
        while (list.next()) {
        }
        const auto answers = answersTo(listOf(row));
        if (where == "notes") {
            std::string notes;
            for (const std::string& note : list.notes())
                notes += (notes.empty() ? "" : "|") + note;
            EXPECT_EQ(notes, row["Says"]) << row.where();
        } else {
            EXPECT_EQ(answers.back().at(where), saysOf(row)) << row.where();
        }
    }
}

TEST(DutyList, AnAnswerIsAListWithTheSameAnswer)
{
    for (const Case& row : readCases("lists.csv"))
        if (row["Where"] != "list") {
            const std::string answer = answerTo(listOf(row));
            EXPECT_EQ(answerTo(answer), answer) << row.where();
        }
}

TEST(DutyList, RefusesListsThatCannotBeRead)
{
    EXPECT_EQ(refusalOf(""), "1: there is no header row with the names of the columns");
    EXPECT_TRUE(refusalOf("Gas;Pressure\nx;1.5\ny;\u00A02,5 \n").starts_with("3: numbers are written in two ways"));
    EXPECT_EQ(refusalOf("Gas,Notes\nx,\"a\n\xBD\"\n"), "3: the text is not UTF-8: save it as CSV in UTF-8");
    const std::string longest(1 << 20, 'x');
    EXPECT_EQ(refusalOf("Gas\n" + longest), "none");
    EXPECT_EQ(refusalOf("Gas\n\n" + longest + 'x'), "3: a line of more than a million characters");
    const std::string half(1 << 19, 'x');
    EXPECT_EQ(answersTo("Notes\n\"" + half + '\n' + half + "\n\"\n").size(), 3U) << "nor is a row of many lines longer";
    std::string figure = "1";
    while (figure.size() < longest.size() / 4)
        figure += " 000";
    EXPECT_TRUE(answersTo("Pump Rate,Gas\n" + figure + ",\n").front().at("Comments").ends_with("like 1200.5"));
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
    EXPECT_TRUE(list.answerHeader().starts_with("\xEF\xBB\xBFNotes;Pump Rate;Pressure;Tank Volume; gas;Valve Model;"));
    const auto duty = list.next();
    // 100 + 100 / 42 SCFH of carbon dioxide; 10 x 0.4 x 62.5 SCFH of nitrogen are 0.8 of that
    EXPECT_EQ(
        list.answer(*duty),
        "\"a;\"\"b\"\"\r\n\";12,5; 62,5;100;dry co2 ;Series 61;Pad;API-2000;US;PSI;1,52;gpm;Gallons;"
        "Valve Model Series 61 | Valve Type Pad | Sizing Method API-2000 | Units of Measure US | Units of Pressure "
        "PSI | Specific Gravity 1,52;sized;100;2,3;102;SCFH;0,4;\"1/2\"\"\";200;51;;;not labelled\r\n");
    EXPECT_EQ(duty->sizing->screen.text(Box::cmbBlanketingGas), "Dry CO2");
    EXPECT_TRUE(list.answer(*list.next()).starts_with("\"\"\"x\"\"y\";;;;;;;;;;;;;;refused;"));
    EXPECT_TRUE(list.answer(*list.next()).starts_with("z;1.000.000;.;;;;;;;;;;;;refused;"));
}

/// A listed gas by any spelling; a gravity names its gas; any other name stays as it is.
TEST(DutyList, EntersTheGasAsTheScreenDoes)
{
    std::istringstream in("Gas,Specific Gravity\n AIR,\nArgon,1.52\n,0.6\n,0.61\nnitrogen,\n");
    DutyList list(in, testTables());
    for (const char* const entered : {"Air 1", "Argon 1.52", "Natural Gas 0.6", " 0.61", "Nitrogen 0.97"}) {
        const PlainScreen screen = list.next()->sizing->screen;
        EXPECT_EQ(screen.text(Box::cmbBlanketingGas) + " " + screen.text(Box::txtSpecGrav), entered);
    }
}

} // namespace

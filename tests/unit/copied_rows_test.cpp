#include "lists/copied_rows.h"

#include "files/csv_reader.h"
#include "support/cases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <vector>

namespace
{

/// The status, flow and valve of each line of what is to be pasted, a header's as such, an empty line as "-".
std::string seenIn(const std::string& added)
{
    constexpr const char* names[] = {"Status", "Total Flow", "Valve Coefficient", "Valve Body Size"};
    std::vector<std::size_t> columns;
    std::string seen;
    std::istringstream lines(added);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream in(line);
        CsvRow row;
        seen += seen.empty() ? "" : " ";
        if (line.empty() || !CsvReader(in, '\t').next(row)) {
            seen += "-";
            continue;
        }
        if (columns.empty()) {
            for (const char* const name : names)
                columns.push_back(static_cast<std::size_t>(std::ranges::find(row.fields, name) - row.fields.begin()));
            seen += "header";
            continue;
        }
        for (const std::size_t column : columns)
            seen += (column == columns.front() ? "" : "|") + row.fields.at(column);
    }
    return seen;
}

TEST(CopiedRows, LineUpWithWhatIsAdded)
{
    const struct
    {
        const char* symptom;
        const char* copied;
        char decimalMark;
        const char* added;
        const char* outcome;
    } cases[] = {
        {"plain", "Tag Number\tPump Rate\tPressure\tTank Volume\nT-1\t100\t50\t10000\n", '.', "header sized|1038|4|1\"",
         "1 of 1 row sized: paste it beside the list."},
        {"a cell with a line break, quoted; marks that are not; a header of two lines; no line end at the end",
         "Notes\t\"Pump\nRate\"\tPressure\tTank Volume\tMaterial\r\n\"one \"\"a\"\"\ntwo\"\t100\t50\t10000\t1/2\" "
         "pipe\r\n"
         "\"A\" tank\t100\t50\t10000\t\"B",
         '.', "header sized|1038|4|1\" sized|1038|4|1\"", "2 of 2 rows sized: paste them beside the list."},
        {"empty rows above, between and below",
         "\t\t\n\nPump Rate\tPressure\tTank Volume\n\t\t\n100\t50\t10000\n\n\n100\t\t\n\t\t\n", '.',
         "- - header - sized|1038|4|1\" - - refused|||", "1 of 2 rows sized, 1 refused: paste them beside the list."},
        {"German", "Pump Rate\tPressure\tTank Volume\tGas\n12,5\t62,5\t100\tdry co2\n", '.',
         "header sized|102|0,4|1/2\"", "1 of 1 row sized: paste it beside the list."},
        {"German, no number has a mark", "Pump Rate\tPressure\tTank Volume\n10\t60\t100\n", ',',
         "header sized|82|0,2|1/2\"", "1 of 1 row sized: paste it beside the list."},
        {"of an English list on a German desktop", "Pump Rate\tPressure\tTank Volume\n10.5\t60\t100\n", ',',
         "header sized|86|0.2|1/2\"", "1 of 1 row sized: paste it beside the list."},
        {"own columns, and what is taken for granted", "Site\tPump Rate\tPressure\tTank Volume\nA\t100\t50\t10000\n",
         '.', "header sized|1038|4|1\"",
         "1 of 1 row sized: paste it beside the list.\nNo column Valve Model: Series 61 taken for 1 row.\nNo column"},
        {"results of before",
         "Pump Rate\tPressure\tTank Volume\tPump Rate Units\tTank Volume Units\tFilled In\tStatus\tPump-Rate "
         "Flow\tTotal "
         "Flow\tFlow Units\tValve Coefficient\n100\t50\t10000\n",
         '.', "", "Nothing is sized: the copied rows have results already. Copy the columns of the list alone."},
        {"by another method", "Sizing Method\tPump Rate\tPressure\nDirect Displacement\t100\t50\nAPI-2000\t100\t50\n",
         '.', "header sized|800|2|1\" refused|||",
         "1 of 2 rows sized, 1 refused: paste them beside the list. The header lacks Tank Volume."},
        {"lacking", "Tag Number\tPressure\nT-1\t50\n", '.', "",
         "Nothing is sized: the first copied row must be the header, and it lacks Pump Rate and Tank Volume."},
        {"no header", "T-1\t100\t50\t10000\n", '.', "", "Nothing is sized: "},
        {"misspelt", "Tag Number\tPump Rate\tPresure\tTank Volume\nT-1\t100\t50\t10000\n", '.', "",
         "Nothing is sized: row 1 of the copied ones, column 3, \"Presure\""},
        {"two ways of writing", "Pump Rate\tPressure\tTank Volume\n1,5\t50.5\t1000\n", '.', "",
         "Nothing is sized: row 2 of the copied ones, numbers are written in two ways, \"50.5\" and \"1,5\"."},
        {"header alone", "Pump Rate\tPressure\tTank Volume\n", '.', "",
         "Nothing is sized: copy the rows below the header, too."},
        {"nothing", "\t\n", '.', "", "Nothing is copied that can be sized: "},
    };
    for (const auto& [symptom, copied, decimalMark, added, outcome] : cases) {
        const CopiedRows rows = sizeCopiedRows(copied, testTables(), decimalMark);
        EXPECT_EQ(seenIn(rows.added), added) << symptom;
        EXPECT_TRUE(rows.outcome.starts_with(outcome)) << symptom << ": " << rows.outcome;
    }
    EXPECT_EQ(sizeCopiedRows(cases[0].copied, "/nowhere", '.').outcome,
              "Nothing is sized: the valve tables cannot be read: nowhere is missing.");
}

} // namespace

#include "lists/list_run.h"
#include "lists/size_command.h"
#include "report/file_name.h"
#include "support/data_file_fixture.h"

#include <sstream>

namespace
{

namespace fs = std::filesystem;

const std::string noChecksum = "; DROP TABLE Checksum; PRAGMA application_id = 0";

/// Lists that are sized on a data file of their own, and what they leave in files.
class ListsInFiles : public DataFile
{
};

TEST_F(ListsInFiles, OnlyARowThatMissesATableFails)
{
    sql("DROP TABLE USLargeTank" + noChecksum);
    std::istringstream in("Pump Rate,Pressure,Tank Volume\n100,60,1000000\n100,60,1000\n");
    DutyList list(in, file.string());
    const auto large = list.next();
    EXPECT_TRUE(large->status == SizedDuty::Status::failed);
    EXPECT_EQ(large->sizing->messages.texts, std::vector<std::string>{"capacities.mdb has no table USLargeTank"});
    EXPECT_TRUE(list.next()->status == SizedDuty::Status::sized);
}

/// Another program writes to the answer and to the data file while a list is sized.
TEST_F(ListsInFiles, NothingIsWrittenOverAndOtherTablesAreTold)
{
    const fs::path list = directory / "list.csv";
    const fs::path answer = directory / "answer.csv";
    const fs::path pages = directory / "pages";
    std::ofstream(list) << "Pump Rate,Pressure,Tank Volume\n100,60,1000\n";
    const auto meanwhile = [&](const SummaryForm&, const std::optional<TablesLabel>&) {
        std::ofstream(answer) << "somebody's";
        std::ofstream(file) << "others";
        return std::string("page");
    };
    const auto begin = [&] {
        fs::remove_all(pages);
        fs::remove(file); // Windows's library of GCC 12 copies over no file
        fs::copy_file(testTables(), file);
    };
    const auto outcome = [&](const fs::path& into, bool replaces) {
        begin();
        try {
            ListRun run({list, into, replaces, pages}, file.string(), meanwhile, "today");
            while (run.next()) {
            }
            return run.outcome();
        } catch (const std::runtime_error& failure) {
            return std::string(failure.what());
        }
    };
    EXPECT_EQ(outcome(list, true), list.string() + ": this is the list; its answer needs a name of its own");
    EXPECT_EQ(outcome(answer, false), answer.string() + ": it exists already");
    EXPECT_EQ(contents(answer), "somebody's");
    const std::string told = "he data file was changed meanwhile; all rows are sized on the earlier one";
    EXPECT_TRUE(outcome(answer, true).ends_with(" T" + told + '.'));

    begin();
    testing::internal::CaptureStderr();
    sizeValves({"-o", answer.string(), "--summaries", pages.string(), list.string()},
               {file.string(), meanwhile, "today"});
    EXPECT_TRUE(testing::internal::GetCapturedStderr().ends_with("size_valves: t" + told + '\n'));
}

TEST_F(ListsInFiles, SummariesHaveNamesThatAreSafeAndTheirOwn)
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

    const auto write = [&](SummaryFiles& files, const char* tag, const char* pumpRate = "10") {
        std::istringstream in(std::string("Tag Number,Pump Rate,Pressure,Tank Volume\n") + tag + ',' + pumpRate +
                              ",60,100\n");
        DutyList list(in, file.string());
        auto duty = list.next();
        return files.write(list, *duty);
    };
    const auto pdf = [](const SummaryForm&, const std::optional<TablesLabel>&) { return std::string("page"); };
    SummaryFiles files(directory / "new", pdf, "today", false);
    for (const char* const tag : {"T-1", "t-1", ""})
        EXPECT_EQ(write(files, tag), "");
    for (const char* const name : {"T-1.pdf", "t-1 (2).pdf", "line 2.pdf"})
        EXPECT_TRUE(fs::exists(directory / "new" / name)) << name;
    std::ofstream(directory / "new" / "T-1.pdf.new-backup") << "somebody's own";
    const fs::path other = directory / "new" / "other.pdf";
    const auto slowPdf = [&](const SummaryForm&, const std::optional<TablesLabel>&) {
        std::ofstream(other) << "somebody's own"; // while it is made, another program writes a file of that name
        return std::string("page");
    };
    SummaryFiles again(directory / "new", slowPdf, "tomorrow", false);
    for (const char* const tag : {"T-1", "t-1"})
        EXPECT_EQ(write(again, tag), "");
    EXPECT_EQ(again.left(), 2U);
    for (const char* const tag : {"", "other"})
        EXPECT_NE(write(again, tag, "20").find("it exists already"), std::string::npos) << tag;
    EXPECT_EQ(fs::file_size(other), 14U);
    sql("CREATE TABLE Label AS SELECT 'new' AS label, 'today' AS date" + noChecksum);
    SummaryFiles ofNewTables(directory / "new", pdf, "today", false);
    EXPECT_NE(write(ofNewTables, "T-1"), "") << "the same figures of other tables";
    SummaryFiles forced(directory / "new", pdf, "today", true);
    EXPECT_EQ(write(forced, "T-1"), "");
    EXPECT_EQ(forced.left(), 0U);
    EXPECT_TRUE(fs::exists(directory / "new" / "T-1.pdf.new-backup"));
}

} // namespace

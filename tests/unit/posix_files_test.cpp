#include "files/system.h"
#include "lists/size_command.h"
#include "support/build_fixture.h"
#include "support/data_file_fixture.h"
#include "support/full_disk.h"

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <optional>

// What modes, owners, links, limits and the environment of POSIX systems have to do with files.

namespace
{

TEST_F(BuildCapacities, FindsATableNamedWithOtherCapitals)
{
    fs::rename(root / "in" / "psi_Pad.csv", root / "in" / "psi_pad.csv");
    expectRefused("other capitals");
    EXPECT_TRUE(reported("psi_Pad.csv: error", "named otherwise: psi_pad.csv; expected psi_Pad.csv")) << messages;
    EXPECT_TRUE(reported("build_capacities", "errors: 1, warnings: 0;")) << messages;
}

TEST_F(BuildCapacities, SaysWhyTheFileCannotBeWritten)
{
    ASSERT_EQ(build(), 0) << messages;
    fs::copy_file(database, root / "built.mdb");
    write(database, before);
    std::optional<FullDisk> disk(12'500);
    expectRefused("");
    const std::string whenBuilt = messages;
    EXPECT_EQ(command({"--export", (root / "built.mdb").string(), (root / "csv").string()}), 1);
    disk.reset();
    EXPECT_TRUE(reported((root / "csv" / "psi_Depad.csv").string() + ": error", "File too large")) << messages;
    EXPECT_TRUE(fs::is_empty(root / "csv")) << "what was written would be in the way";
    messages = whenBuilt;
    EXPECT_TRUE(reported(database.string() + ": error", "the file cannot be written: File too large")) << messages;

    write(database, "Pressure,flow,Bodysize,CV\n");
    EXPECT_EQ(build(), 1);
    EXPECT_TRUE(reported(database.string() + ": error", "a file of another kind is there")) << messages;
    EXPECT_EQ(contents(database), "Pressure,flow,Bodysize,CV\n");

    for (const auto& [file, words] :
         {std::pair{root / "absent" / "capacities.mdb", "No such file or directory"}, {root / "out", "directory"}}) {
        database = file;
        EXPECT_EQ(build(), 1);
        EXPECT_TRUE(reported(database.string() + ": error", words)) << messages;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(root), {}), 4) << "a temporary file is left";
}

TEST_F(BuildCapacities, TakesThePlaceOfTheFileThatWasThere)
{
    const fs::path real = root / "out" / "real.mdb";
    fs::rename(database, real);
    fs::create_symlink("real.mdb", database);
    fs::permissions(real, fs::perms(0640));
    write(root / "out" / "real.mdb.new-tables", "somebody's own");
    const mode_t maskBefore = umask(077);
    EXPECT_EQ(build(), 0) << messages;
    EXPECT_EQ(filesBesideOutput(), 3);
    EXPECT_EQ(contents(root / "out" / "real.mdb.new-tables"), "somebody's own");
    EXPECT_TRUE(fs::is_symlink(database));
    EXPECT_EQ(fs::status(real).permissions(), fs::perms(0640));
    EXPECT_NE(contents(real), before);
    fs::remove(real);
    EXPECT_EQ(build(), 0) << messages;
    EXPECT_EQ(fs::status(real).permissions(), fs::perms(0644));
    umask(maskBefore);
}

TEST_F(BuildCapacities, AnInterruptionLeavesNothingBehind)
{
    const auto interrupt = [](int) { std::raise(SIGINT); };
    const auto exit = testing::ExitedWithCode(1);
    EXPECT_EXIT((prepareConsole(), interrupt(0), std::exit(build())), exit, "") << "while the tables were read";
    EXPECT_EXIT(
        {
            const FullDisk disk(12'500);
            std::signal(SIGXFSZ, interrupt);
            std::exit(build());
        },
        exit, "")
        << "in the middle of the file";
    EXPECT_EQ(filesBesideOutput(), 1);
    EXPECT_TRUE(contents(database) == before);
}

TEST_F(BuildCapacities, AnInterruptedListKeepsNoResults)
{
    const std::string list = (root / "list.csv").string();
    const std::string results = (root / "out" / "results.csv").string();
    const std::string pages = (root / "pages").string();
    write(list, "Pump Rate,Pressure,Tank Volume\n100,60,1000\n");
    const auto interrupt = [](const SummaryForm&, const std::optional<TablesLabel>&) {
        std::raise(SIGTERM);
        return std::string("page");
    };
    SizeCommandSystem system{testTables(), interrupt, "today", {}};
    const auto work = [&] {
        std::signal(SIGTERM, SIG_DFL);
        std::_Exit(sizeValves({"-o", results, "--summaries", pages, list}, system)); // the other tests' tables stay
    };
    EXPECT_EXIT(work(), testing::ExitedWithCode(2), "^size_valves: interrupted after 0 rows; no results are kept\n$");
    EXPECT_EQ(filesBesideOutput(), 1);
    std::FILE* const nameless = openNamelessFile(root);
    if (nameless == nullptr)
        GTEST_SKIP() << "this file system has no files without a name: what is killed leaves one";
    std::fclose(nameless);
    fs::remove_all(pages);
    system.makePdf = [](const SummaryForm&, const std::optional<TablesLabel>&) {
        std::raise(SIGKILL);
        return std::string("page");
    };
    EXPECT_EXIT(work(), testing::KilledBySignal(SIGKILL), "");
    EXPECT_EQ(filesBesideOutput(), 1);
}

TEST_F(DataFile, AReadOnlyFileIsRead)
{
    chmod(file.c_str(), 0444);
    chmod(directory.c_str(), 0555);
    const uid_t user = geteuid();
    if (user == 0) { // to whom no file is read-only
        ASSERT_EQ(seteuid(65534), 0);
    }
    EXPECT_EQ(size(), "20 64");
    ASSERT_EQ(seteuid(user), 0);
    chmod(directory.c_str(), 0755);
}

TEST_F(BuildCapacities, StoresWhatTheTablesAre)
{
    const std::string in = (root / "in").string();
    setenv("SOURCE_DATE_EPOCH", "951868799", 1);
    const std::string label = "list 12-3, \"Größe 5\"";
    EXPECT_EQ(command({"--complete", "--label", label, in, database.string()}), 0) << messages;
    EXPECT_EQ(query("SELECT label || '|' || date FROM Label"), label + "|2000-02-29");
    const std::string built = contents(database);
    EXPECT_EQ(command({"--label", label, "--complete", in, database.string()}), 0) << messages;
    EXPECT_TRUE(contents(database) == built) << "the same bytes";
    EXPECT_EQ(command({"--check", database.string()}), 0);
    EXPECT_NE(messages.find("labelled \"" + label + "\", 2000-02-29\n"), std::string::npos) << messages;
    EXPECT_EQ(command({"--export", database.string(), (root / "csv").string()}), 0) << messages;
    EXPECT_NE(messages.find(R"(--label "list 12-3, \"Größe 5\"")"), std::string::npos) << messages;

    for (const std::string bad : {"", " ", "a\nb", "\xBD"})
        EXPECT_EQ(command({"--label", bad, in, database.string()}), 2) << bad;
    EXPECT_EQ(command({"--label", std::string(101, 'a'), in, database.string()}), 2);
    for (const char* const epoch : {"", "-1", "1e9", "253402300800"}) {
        setenv("SOURCE_DATE_EPOCH", epoch, 1);
        EXPECT_EQ(command({"--label", label, in, database.string()}), 2) << epoch;
    }
    unsetenv("SOURCE_DATE_EPOCH");
    EXPECT_TRUE(contents(database) == built);
}

} // namespace

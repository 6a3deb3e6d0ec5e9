#include "capacity/data_file.h"

#include "base/failure.h"
#include "capacity/tables_label.h"
#include "support/data_file_fixture.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <locale>
#include <thread>

namespace
{

using namespace std::chrono_literals;

const std::string refusal = "You have exceeded the maximum available valve capacity for the given supply pressure.";

/// A file is whole or it is no file, nothing beside it changes, and no answer takes long.
TEST_F(DataFile, AFaultEndsInARefusalAndChangesNothing)
{
    const std::string intact = contents(file);
    const auto write = [&](const std::string& bytes) { std::ofstream(file, std::ios::binary) << bytes; };
    const auto beside = [&](const char* ending) { return file.string() + ending; };
    const auto keepJournal = [&] { // as after a crash in the middle of a change
        sqlite3* writer = nullptr;
        sqlite3_open(file.string().c_str(), &writer);
        sqlite3_exec(writer, "PRAGMA synchronous = OFF; BEGIN; UPDATE psi_Pad SET flow = 1", nullptr, nullptr, nullptr);
        std::filesystem::copy_file(beside("-journal"), beside(".kept"));
        sqlite3_close(writer);
        std::filesystem::rename(beside(".kept"), beside("-journal"));
    };
    const std::string noChecksum = "; DROP TABLE Checksum; PRAGMA application_id = 0";
    const std::string endless =
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i AS TankVol, i "
        "AS Pad, i AS DepadHFP, i AS DepadLFP FROM n";
    // Each is small, and worked out in full takes 100 MB or more.
    std::string view = "CREATE VIEW v AS WITH a0 AS (SELECT 1 AS x)";
    std::string generated = "CREATE TABLE g (w0";
    std::string tables;
    for (int i = 1; i < 200; ++i) {
        const std::string own = std::to_string(i), before = std::to_string(i - 1);
        if (i < 18)
            view += ", a" + own + " AS (SELECT one.x FROM a" + before + " AS one, a" + before + " AS two)";
        if (i < 20)
            generated += ", w" + own + " INT NOT NULL AS (w" + before + " + w" + before + ")";
        tables += "; CREATE TABLE t" + own + " (x)";
    }
    view += " SELECT * FROM a17";
    const std::string schemaRow = "; PRAGMA writable_schema = ON; INSERT INTO sqlite_schema VALUES ('table', ";
    struct Fault
    {
        const char* name;
        std::function<void()> make;
        std::string answer = refusal;
        std::string reason = ""; ///< follows the name of the file
    };
    for (const Fault& fault : std::initializer_list<Fault>{
             {"none", [] {}, "20 64"},
             {"missing", [&] { std::filesystem::remove(file); }, refusal, "is missing"},
             {"a directory", [&] { std::filesystem::remove(file), std::filesystem::create_directory(file); }, refusal,
              "is no file"},
             {"empty", [&] { write(""); }, refusal, "is empty"},
             {"not SQLite", [&] { write(std::string(8192, 'x')); }, refusal, "is damaged: file is not a database"},
             {"one byte short", [&] { write(intact.substr(0, intact.size() - 1)); }},
             {"short of its last page", [&] { write(intact.substr(0, intact.size() - 4095)); }},
             {"a figure changed", [&] { sql("UPDATE USLargeTank SET Pad = 24999 WHERE Pad = 25000"); }, refusal,
              "is damaged: it is not as it was built"},
             {"a body size changed", [&] { sql("UPDATE psi_Pad SET Bodysize = '9'"); }},
             {"too large", [&] { std::filesystem::resize_file(file, largestDataFile + 1); }, refusal,
              "is too large: more than 16 MB"},
             {"as large as may be", [&] { std::filesystem::resize_file(file, largestDataFile); }, "20 64"},
             {"a figure changed and the checksum gone",
              [&] { sql("UPDATE psi_Pad SET flow = 9; DROP TABLE Checksum"); }, refusal,
              "is damaged: it is not as it was built"},
             {"a file without a checksum", [&] { sql("SELECT 1" + noChecksum); }, "20 64"},
             {"a damaged file without one",
              [&] { sql("SELECT 1" + noChecksum), write(contents(file).substr(0, 20000)); }},
             {"a hot journal", keepJournal, refusal, "is being changed by another program"},
             {"a journal that is done with", [&] { std::ofstream(beside("-journal")) << '\0'; }, "20 64"},
             {"a WAL beside it", [&] { std::ofstream(beside("-wal")) << "x"; }, refusal,
              "is being changed by another program"},
             {"a WAL beside what it is a link to",
              [&] {
                  std::filesystem::rename(file, beside(".target"));
                  std::error_code noLinks;
                  std::filesystem::create_symlink(beside(".target"), file, noLinks);
                  std::ofstream(beside(noLinks ? "-wal" : ".target-wal")) << "x";
                  if (noLinks)
                      std::filesystem::rename(beside(".target"), file);
              },
              refusal, "is being changed by another program"},
             {"in WAL mode", [&] { sql("PRAGMA journal_mode = WAL"); }, refusal,
              "is in WAL mode, in which other files belong to it"},
             {"an endless view",
              [&] { sql("DROP TABLE USLargeTank; CREATE VIEW USLargeTank AS " + endless + noChecksum); }, refusal,
              "has no plain table USLargeTank"},
             {"a huge column", [&] { sql("ALTER TABLE psi_Pad ADD x AS (zeroblob(400000000))" + noChecksum); }},
             {"a view that grows", [&] { sql(view + noChecksum); }, "20 64"},
             {"and is a table, too",
              [&] { sql(view + schemaRow + "'V', 'V', 2, 'CREATE TABLE IF NOT EXISTS V(x)')" + noChecksum); }},
             {"and is read by a virtual table",
              [&] {
                  sql(view + schemaRow + "'f', 'f', 0, 'CREATE VIRTUAL TABLE f USING fts4(content=v)')" + noChecksum);
              },
              "20 64"},
             {"a column that grows", [&] { sql(generated + ")" + noChecksum); }},
             {"very many tables", [&] { sql("SELECT 1" + tables + noChecksum); }, refusal,
              "has too many tables and indexes"},
             {"a table with a very long text",
              [&] { sql("CREATE TABLE t (x DEFAULT '" + std::string(10'000, 'x') + "')" + noChecksum); }},
             {"no table", [&] { sql("DROP TABLE psi_Pad" + noChecksum); }, refusal, "has no table psi_Pad"},
             {"no index", [&] { sql("DROP INDEX \"psi_Pad.Index\"" + noChecksum); }, refusal,
              "has no such index: psi_Pad.Index"},
             {"an index on a formula", [&] { sql("CREATE INDEX i ON psi_Pad (flow * 2)" + noChecksum); }, refusal,
              "has an index that is computed"},
             {"an index of some rows", [&] { sql("CREATE INDEX i ON psi_Pad (flow) WHERE flow > 9" + noChecksum); },
              refusal, "has an index that is computed"},
             {"other capitals", [&] { sql("ALTER TABLE psi_Pad RENAME flow TO FLOW" + noChecksum); }, "20 64"},
             {"no Cv column", [&] { sql("ALTER TABLE psi_Pad RENAME CV TO Kv" + noChecksum); }},
             {"no rows", [&] { sql("DELETE FROM psi_Pad" + noChecksum); }},
             {"a label that is a view", [&] { sql("CREATE VIEW Label AS SELECT 1 AS label, 2 AS date" + noChecksum); },
              "20 64"},
             // What a whole file does not have is a failure of its own lookup alone: no breathing.
             {"no large tanks", [&] { sql("DROP TABLE USLargeTank" + noChecksum); }, "1 40",
              "has no table USLargeTank"},
             {"no flows of large tanks", [&] { sql("ALTER TABLE USLargeTank RENAME Pad TO Pump" + noChecksum); },
              "1 40", "has no column Pad"},
         }) {
        std::filesystem::remove_all(directory);
        std::filesystem::create_directory(directory);
        write(intact);
        fault.make();
        std::error_code none; // the last change is long ago: nobody is to be waited for
        std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - 1h, none);
        const auto before = everything();
        const auto start = std::chrono::steady_clock::now();
        sqlite3_memory_highwater(1);
        EXPECT_EQ(size(), fault.answer) << fault.name;
        EXPECT_FALSE(tablesLabel(store).has_value()) << fault.name;
        if (!fault.reason.empty() || fault.answer != refusal) {
            EXPECT_EQ(store.trouble(), fault.reason.empty() ? "" : "capacities.mdb " + fault.reason) << fault.name;
        }
        EXPECT_LT(sqlite3_memory_highwater(0), 20'000'000) << fault.name;
        EXPECT_LT(std::chrono::steady_clock::now() - start, 5s) << fault.name; // on a busy machine
        EXPECT_TRUE(everything() == before) << fault.name << ": the file or one beside it was changed";
    }
}

/// The largest tables that `build_capacities` takes have room in a file, and in the two seconds of a click.
TEST_F(DataFile, TheLargestTablesAreSized)
{
    std::string fill = "DROP TABLE Checksum; PRAGMA application_id = 0; BEGIN;"
                       "CREATE TEMP TABLE n AS WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 19000) "
                       "SELECT i FROM n;";
    for (const Offer& offer : offers)
        fill += "INSERT INTO " + std::string(offer.valveTable) +
                " SELECT 0.0001 * i, 0.0001 * i, 'a usual text', 0.5 FROM n WHERE (SELECT count(*) FROM " +
                offer.valveTable + ") < 19000;";
    sql(fill + "COMMIT");
    EXPECT_EQ(size(), "20 64") << store.whyUnreadable();
}

/// A main screen that does something to the file between two lookups: when the caption is written.
struct BusyScreen : PlainScreen
{
    Label when = Label::lblComments;
    std::function<void()> act;

    void setCaption(Label label, const std::string& text) override
    {
        PlainScreen::setCaption(label, text);
        if (label == when)
            std::exchange(act, [] {})();
    }
};

TEST_F(DataFile, AClickIsSizedOnTheFileThatItBeganWith)
{
    const std::string intact = contents(file);
    const auto write = [&](const std::string& bytes) { std::ofstream(file, std::ios::binary) << bytes; };
    for (const Label label : {Label::lblPRFlow, Label::lblCV, Label::lblMaxValveCapacity}) {
        write(intact);
        BusyScreen busy;
        busy.when = label;
        busy.act = [&] { write(intact.substr(0, intact.size() - 4096)); };
        busy.boxes = {{Box::txtPumpRate, "100"},
                      {Box::txtPressure, "150"},
                      {Box::txtSpecGrav, "0.97"},
                      {Box::txtTankVolume, "1000000"}};
        SizingContext context{state, busy, messages, numbers, store};
        cmdCalcFlowRate_Click(context);
        EXPECT_EQ(busy.caption(Label::lblPercentValveCapacity), "86") << static_cast<int>(label);
        EXPECT_EQ(size(), refusal) << "the next click reads the file again";
    }
}

/// As a program leaves it that writes through a mapping.
TEST_F(DataFile, AChangeThatLeavesNoTimeIsSeen)
{
    ASSERT_EQ(size(), "20 64");
    const auto time = std::filesystem::last_write_time(file);
    sql("UPDATE USLargeTank SET Pad = Pad - 1");
    std::filesystem::last_write_time(file, time);
    EXPECT_EQ(size(), refusal);
    EXPECT_EQ(store.whyUnreadable(), "capacities.mdb is damaged: it is not as it was built");
}

TEST_F(DataFile, AFileInTheMiddleOfAChangeIsWaitedForAWhile)
{
    const std::filesystem::path journal = file.string() + "-journal";
    std::ofstream(journal) << "x";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(size(), refusal);
    EXPECT_GT(std::chrono::steady_clock::now() - start, 1900ms);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    std::thread end([&] {
        std::this_thread::sleep_for(300ms);
        std::filesystem::remove(journal);
    });
    EXPECT_EQ(size(), "20 64");
    end.join();
}

/// As a copy over the file does it: first it is empty, then cut, then whole.
TEST_F(DataFile, ACopyOnItsWayIsWaitedFor)
{
    const std::string intact = contents(file);
    for (const std::size_t there : {std::size_t{0}, intact.size() / 2}) {
        std::ofstream copy(file, std::ios::binary | std::ios::trunc);
        copy << intact.substr(0, there) << std::flush;
        std::thread end([&] {
            std::this_thread::sleep_for(100ms);
            copy << intact.substr(there) << std::flush;
        });
        EXPECT_EQ(size(), "20 64") << there;
        end.join();
    }
}

/// Acts when streams begin to read for the second time: the data file is read twice.
struct SecondReading : std::codecvt<char, char, std::mbstate_t>
{
    std::function<void()> act;
    mutable int readings = 0;

    explicit SecondReading(std::function<void()> action) : act(std::move(action)) {}
    bool do_always_noconv() const noexcept override // asked before each reading
    {
        if (++readings == 2)
            act();
        return true;
    }
};

TEST_F(DataFile, AChangeBetweenTheTwoReadingsIsSeen)
{
    const auto write = [&](char byte) {
        std::ofstream(file) << std::string(20'000, byte);
        std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - 1h);
    };
    const std::locale usual;
    const auto read = [&](const std::function<void()>& meanwhile) {
        write('a');
        std::locale::global({usual, new SecondReading(meanwhile)});
        return readDataFile(file, "").value().front();
    };
    EXPECT_EQ(read([&] { write('b'); }), 'b');
    EXPECT_THROW(read([&] { std::ofstream(file.string() + "-journal") << "x"; }), SilentFailure);
    std::locale::global(usual);
}

TEST_F(DataFile, ThatAnEarlierVersionBuiltIsRead)
{
    std::filesystem::remove(file);
    sql(caseText("earlier_file.sql"));
    EXPECT_EQ(size(), "20 64"); // 25800 of 40000 SCFH are a half more
    EXPECT_EQ(describe(tablesLabel(store).value()), "by hand (2026-11-01)");

    sql("DROP TABLE Label; CREATE TABLE Label AS SELECT 12.5 AS label, 'today' AS date; DROP TABLE Checksum; "
        "PRAGMA application_id = 0");
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() + 1h); // by another clock
    EXPECT_EQ(size(), "20 64");
    EXPECT_EQ(describe(tablesLabel(store).value()), "12.5 (today)");
}

} // namespace

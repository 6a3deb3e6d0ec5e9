#include "engine/sizing_driver.h"
#include "support/sizing_fixture.h"

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <thread>

namespace
{

class DataFile : public SizingTest
{
protected:
    DataFile() { capacityTable("any", "(10, 10000, '2\"', 10), (100, 10000, '2\"', 10)"); }

    /// A duty that takes half of the only valve.
    void size()
    {
        state.ValveModel = choice::series63;
        state.SizingMethod = choice::directDisplacement;
        screen.boxes = {
            {Box::txtPumpRate, "625"}, {Box::txtPressure, "30"}, {Box::txtSpecGrav, "0.97"}, {Box::txtTankVolume, "0"}};
        screen.captions.clear();
        cmdCalcFlowRate_Click(sizing);
    }
};

/// A data file that cannot be used ends in the refusal of a duty beyond every valve, and nothing is written beside it.
TEST_F(DataFile, UnusableDataFiles)
{
    std::ifstream in(file, std::ios::binary);
    const std::string whole(std::istreambuf_iterator<char>(in), {});
    const auto write = [&](const std::string& bytes) { std::ofstream(file, std::ios::binary) << bytes; };
    const auto corrupt = [&](std::size_t from, std::size_t to) {
        std::string bytes = whole;
        for (std::size_t at = from; at < std::min(to, bytes.size()); ++at)
            bytes[at] = static_cast<char>(0x5A);
        write(bytes);
    };
    const std::map<std::string, std::function<void()>> faults = {
        {"missing", [&] { std::filesystem::remove(file); }},
        {"a directory", [&] { std::filesystem::remove(file), std::filesystem::create_directory(file); }},
        {"empty", [&] { write(""); }},
        {"truncated", [&] { write(whole.substr(0, whole.size() / 3)); }},
        {"not SQLite", [&] { write(std::string(8192, 'x')); }},
        {"damaged schema", [&] { corrupt(100, 4096); }},
        {"damaged rows", [&] { corrupt(4096, whole.size()); }},
        {"no table", [&] { sql("DROP TABLE any"); }},
        {"no index", [&] { sql("DROP INDEX \"any.Index\""); }},
        {"no pressure column", [&] { sql("DROP INDEX \"any.Index\"; ALTER TABLE any RENAME Pressure TO P"); }},
        {"no Cv column", [&] { sql("ALTER TABLE any RENAME CV TO Kv"); }},
        {"no rows", [&] { sql("DELETE FROM any"); }},
    };
    for (const auto& [name, makeFault] : faults) {
        std::filesystem::remove_all(file);
        write(whole);
        makeFault();
        size();
        EXPECT_EQ(comments(), "You have exceeded the maximum available valve capacity for the given supply pressure.")
            << name;
        EXPECT_TRUE(messages.texts.empty()) << name;
        EXPECT_LE(std::distance(std::filesystem::directory_iterator(directory), {}), 1) << name;
    }
}

TEST_F(DataFile, AReadOnlyFileIsRead)
{
    chmod(file.c_str(), 0444);
    chmod(directory.c_str(), 0555);
    const uid_t user = geteuid();
    if (user == 0) { // to whom no file is read-only
        ASSERT_EQ(seteuid(65534), 0);
    }
    size();
    ASSERT_EQ(seteuid(user), 0);
    chmod(directory.c_str(), 0755);
    EXPECT_EQ(screen.caption(Label::lblPercentValveCapacity), "50");
}

TEST_F(DataFile, ALockedFileIsWaitedForAWhile)
{
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &other), SQLITE_OK);
    sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
    size();
    EXPECT_EQ(comments(), "You have exceeded the maximum available valve capacity for the given supply pressure.");
    std::thread release([other] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        sqlite3_close(other);
    });
    size();
    release.join();
    EXPECT_EQ(screen.caption(Label::lblPercentValveCapacity), "50");
}

} // namespace

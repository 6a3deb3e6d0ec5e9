#include "engine/sizing_driver.h"

#include "support/sizing_fixture.h"

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <thread>

namespace
{

/// Whole sizings on one valve of Cv 10 with a capacity of 10000 in every table basis.
class SizingDriver : public SizingTest
{
protected:
    SizingDriver() { capacityTable("any", "(0.01, 10000, '2\"', 10), (1000, 10000, '2\"', 10)"); }

    /// "Direct Displacement", whose total flow is 8 SCFH a gpm; a gravity that makes `GasFactor` 1.
    void duty(const char* type, const char* model, const char* units, double pressure, double flow)
    {
        state.ValveType = type;
        state.ValveModel = model;
        state.SizingMethod = "Direct Displacement";
        state.PressUnits = units;
        screen.boxes[Box::txtPressure] = numbers.general(pressure);
        screen.boxes[Box::txtPumpRate] = numbers.general(flow / 8);
        screen.boxes[Box::txtSpecGrav] = std::string(type) == "Pad" ? "0.97" : "1";
        screen.boxes[Box::txtTankVolume] = "0";
    }
};

const std::string reducePressure =
    "Consider reducing supply pressure to increase valve utilization for better control.";
const std::string reduceSize = "Consider reducing valve size or decreasing differential pressure to increase valve "
                               "utilization for better control.";
const std::string nextLarger70 =
    "If utilized valve capacity is greater than 70%, consider using the next larger valve capacity (Cv).";
const std::string nextLarger80 =
    "If utilized valve capacity is greater than 80%, consider using the next larger valve capacity (Cv).";

TEST_F(SizingDriver, AdviceFollowsTheShareOfTheCapacity)
{
    struct Case
    {
        const char* type;
        const char* model;
        const char* units;
        double pressure;
        double flow; ///< of 10000
        std::string percent;
        std::string comment;
    };
    for (const Case& c : {Case{"Pad", "Series 63", "PSI", 30, 1500, "15", reducePressure},
                          {"Pad", "Series 63", "PSI", 25, 1500, "15", ""},
                          {"Pad", "Series 61", "PSI", 25, 2000, "20", ""},
                          {"Pad", "Series 61", "kg/cm2", 1.8, 1990, "20", reducePressure},
                          {"Depad", "Series 63", "PSI", 2, 4000, "40", ""},
                          {"Depad", "Series 63", "mbar", 30, 4000, "40", reduceSize},
                          {"Depad", "Series 63", "mbar", 25, 4000, "40", ""},
                          {"Depad", "Series 63", "mbar", 30, 5000, "50", ""},
                          {"Depad", "Series 63", "mbar", 30, 1250, "12", reduceSize},
                          {"Depad", "Series 63", "mbar", 30, 8000, "80", ""},
                          {"Depad", "Series 63", "mbar", 30, 8100, "81", nextLarger80},
                          {"Pad", "Series 63", "PSI", 30, 7000, "70", ""},
                          {"Pad", "Series 63", "PSI", 30, 7100, "71", nextLarger70},
                          {"Pad", "Series 63", "PSI", 30, 9950, "100", nextLarger70},
                          {"Pad", "Series 63", "PSI", 30, 150, "2", reducePressure}, // 1.5, halves to even
                          {"Pad", "Series 63", "PSI", 30, 250, "2", reducePressure},
                          {"Pad", "Series 63", "PSI", 30, 99, "Less than 1%", reducePressure},
                          {"Pad", "Series 63", "PSI", 30, 100, "1", reducePressure}}) {
        duty(c.type, c.model, c.units, c.pressure, c.flow);
        cmdCalcFlowRate_Click(sizing);
        EXPECT_EQ(screen.caption(Label::lblPercentValveCapacity), c.percent) << c.flow;
        EXPECT_EQ(comments(), c.comment) << c.type << c.flow;
        EXPECT_EQ(state.Comments, c.comment);
        EXPECT_EQ(screen.caption(Label::lblCV), "10");
        EXPECT_EQ(screen.caption(Label::lblSGGas2), c.type == std::string("Pad") ? "0.97" : "1.00");
    }
}

TEST_F(SizingDriver, Series61AtItsLowestPressureGetsNoAdviceToLowerIt)
{
    capacityTable("small", "(1, 1000, '1/2\"', 0.4), (2, 1000, '1/2\"', 0.4)");
    for (const auto& [pressure, comment] : {std::pair{1.0, std::string()}, {1.01, reducePressure}}) {
        duty("Pad", "Series 61", "PSI", pressure, 100);
        cmdCalcFlowRate_Click(sizing);
        EXPECT_EQ(comments(), comment);
        EXPECT_EQ(screen.caption(Label::lblCV), "0.4");
    }
}

TEST_F(SizingDriver, OverCapacityLeavesTheCommentsOfTheSizingBefore)
{
    duty("Pad", "Series 63", "PSI", 30, 7500);
    cmdCalcFlowRate_Click(sizing);
    screen.captions[Label::lblSGGas2] = "earlier";
    // Shown as 10000 and so looked up; Cv 10 has exactly that, and there is no next one in the table.
    sql("INSERT INTO any VALUES (1000, 10000.1, '2\"', 10)");
    duty("Pad", "Series 63", "PSI", 1000, 10000.3);
    state.PressUnits = "no range";
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(state.Comments, nextLarger70);
    EXPECT_EQ(screen.caption(Label::lblSGGas2), "earlier");
    EXPECT_EQ(messages.texts, std::vector<std::string>{"Error Code 11: modSizeValve"}) << "capacity 0 of Cv 20";
    EXPECT_FALSE(state.SizingError);

    sql("INSERT INTO any VALUES (900, 10, '2\"', 20), (1000, 10000.2, '3\"', 20)");
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(comments(), "You have reached or exceeded the maximum valve capacity for the given Inlet Pressure.");
    for (const Label label :
         {Label::lblCV, Label::lblValveBodySize, Label::lblMaxValveCapacity, Label::lblPercentValveCapacity})
        EXPECT_EQ(screen.caption(label), "");
    EXPECT_EQ(state.Comments, nextLarger70);
    EXPECT_EQ(state.SelectedCv, 20);
}

TEST_F(SizingDriver, ARefusalIsFollowedByAFreshRun)
{
    duty("Pad", "Series 63", "PSI", 30, 5000);
    screen.boxes[Box::txtPumpRate] = "";
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(comments(), "Please enter Pressure and Pump-Rate information.");
    EXPECT_EQ(state.SizingCase, "Pad Direct Displacement");
    duty("Pad", "Series 63", "PSI", 24, 5000);
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(comments(), "Supply Pressure must be between 25 and 200 PSI.");
    EXPECT_EQ(screen.caption(Label::lblTotalFlow), "5000") << "written before the pressure is refused";
    duty("Pad", "Series 63", "PSI", 30, 5000);
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(screen.caption(Label::lblPercentValveCapacity), "50");
    EXPECT_FALSE(state.InputError || state.SizingError);
}

TEST_F(SizingDriver, SizesForTheShownFlowButSharesTheUnrounded)
{
    duty("Pad", "Series 63", "PSI", 30, 12.5);
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(state.ShownTotalFlow, 12); // halves to even
    EXPECT_EQ(state.PercentCap, static_cast<float>(12.5 / 10000));
    duty("Pad", "Series 63", "PSI", 30, 2.52); // shown as 2.5
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(state.ShownTotalFlow, 2);
}

TEST_F(SizingDriver, ACvIsShownCutFromItsSingle)
{
    capacityTable("odd", "(25, 1000, '1\"', 0.7)");
    duty("Pad", "Series 63", "PSI", 25, 500);
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(screen.caption(Label::lblCV), "0.6");
}

TEST_F(SizingDriver, ExtremeEntriesEndInARefusal)
{
    const std::string digits(400, '9');
    const std::string fraction = "0." + std::string(400, '0') + "1";
    struct Case
    {
        Box box;
        std::string text;
        const char* comment;
        std::vector<std::string> messages;
    };
    for (const Case& c :
         {Case{Box::txtPressure, digits, "Supply Pressure must be between 25 and 200 PSI.", {}},
          {Box::txtPressure, fraction, "Supply Pressure must be greater than zero.", {}},
          {Box::txtSpecGrav, digits, "", {"Error Code 11; modGetValveData"}},   // a gas factor of 0
          {Box::txtSpecGrav, fraction, "", {"Error Code 11; modCalcFlowRate"}}, // a gravity of 0
          {Box::txtSpecGrav, "0." + std::string(100, '0') + "1", "", {"Error Code 13: modSizeValve"}}, // no single
          {Box::txtPumpRate, fraction, "Pump-out rate must be greater than zero.", {}}}) {
        duty("Pad", "Series 63", "PSI", 30, 5000);
        screen.boxes[c.box] = c.text;
        screen.captions.clear();
        messages.texts.clear();
        cmdCalcFlowRate_Click(sizing);
        EXPECT_EQ(comments(), c.comment) << c.text;
        EXPECT_EQ(messages.texts, c.messages) << c.text;
        EXPECT_EQ(screen.caption(Label::lblCV), "");
    }
}

/// A data file that cannot be used ends in the refusal of a duty beyond every valve, and nothing is written beside it.
TEST_F(SizingDriver, UnusableDataFiles)
{
    std::string whole;
    {
        std::ifstream in(file, std::ios::binary);
        whole.assign(std::istreambuf_iterator<char>(in), {});
    }
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
        duty("Pad", "Series 63", "PSI", 30, 5000);
        screen.captions.clear();
        cmdCalcFlowRate_Click(sizing);
        EXPECT_EQ(comments(), "You have exceeded the maximum available valve capacity for the given supply pressure.")
            << name;
        EXPECT_TRUE(messages.texts.empty()) << name;
        EXPECT_LE(std::distance(std::filesystem::directory_iterator(directory), {}), 1) << name;
    }
}

TEST_F(SizingDriver, AReadOnlyFileIsRead)
{
    duty("Pad", "Series 63", "PSI", 30, 5000);
    chmod(file.c_str(), 0444);
    chmod(directory.c_str(), 0555);
    const uid_t user = geteuid();
    if (user == 0) { // to whom no file is read-only
        ASSERT_EQ(seteuid(65534), 0);
    }
    cmdCalcFlowRate_Click(sizing);
    ASSERT_EQ(seteuid(user), 0);
    chmod(directory.c_str(), 0755);
    EXPECT_EQ(screen.caption(Label::lblPercentValveCapacity), "50");
}

TEST_F(SizingDriver, ALockedFileIsWaitedForAWhile)
{
    duty("Pad", "Series 63", "PSI", 30, 5000);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &other), SQLITE_OK);
    sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(comments(), "You have exceeded the maximum available valve capacity for the given supply pressure.");
    std::thread release([other] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        sqlite3_close(other);
    });
    cmdCalcFlowRate_Click(sizing);
    release.join();
    EXPECT_EQ(screen.caption(Label::lblPercentValveCapacity), "50");
}

TEST_F(SizingDriver, ARefusedStepUpEndsAsOverCapacity)
{
    capacityTable("steep", "(10, 50, '1/2\"', 0.4), (30, 150, '1/2\"', 0.4)"); // 100 at 20 psi
    duty("Pad", "Series 61", "PSI", 20, 120);
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(comments(), "You have reached or exceeded the maximum valve capacity for the given Inlet Pressure.");
    EXPECT_EQ(state.SelectedCv, 1);
    EXPECT_EQ(state.MaxValveCap, 100);
    EXPECT_EQ(screen.caption(Label::lblCV), "");
}

TEST_F(SizingDriver, AFailedLargeTankLookupBreathesNothing)
{
    struct Case
    {
        const char* table; ///< SQL
        const char* type;
        const char* flow;
        const char* cv;
        std::vector<std::string> messages;
    };
    for (const Case& c :
         {Case{"SELECT 1", "Pad", "80", "10", {}},
          {"CREATE TABLE USLargeTank (TankVol, Pad, DepadHFP, DepadLFP)", "Depad", "86", "10", {}},
          {"INSERT INTO USLargeTank VALUES (1e6, 'x', 'x', 'x')",
           "Depad",
           "86",
           "10",
           {"Error Code 13; modGetLargeTankBRDepadHFP"}},
          // Emptied by the first message, the pressure is no number to the model rules.
          {"SELECT 1", "Pad", "", "", {"Error Code 13; modGetLargeTankBRPad", "Error Code 13; modGetValveData"}}}) {
        sql(c.table);
        screen.captions.clear();
        messages.texts.clear();
        duty(c.type, "Series 63", "no range", 30, 80);
        state.SizingMethod = "API-2000";
        screen.boxes[Box::txtTankVolume] = "1000000";
        screen.boxes[Box::txtFlashPoint] = "100";
        cmdCalcFlowRate_Click(sizing);
        EXPECT_EQ(messages.texts, c.messages);
        EXPECT_EQ(screen.caption(Label::lblTotalFlow), c.flow);
        EXPECT_EQ(screen.caption(Label::lblCV), c.cv);
    }
}

} // namespace

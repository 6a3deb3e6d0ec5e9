// What the routines of the engine do with entries and tables that cannot be, each by itself.

#include "base/display_rounding.h"
#include "engine/large_tank_breathing.h"
#include "engine/sizing_driver.h"
#include "support/cases.h"
#include "support/sizing_fixture.h"

#include <limits>

namespace
{

const std::string nextLarger =
    "If utilized valve capacity is greater than 70%, consider using the next larger valve capacity (Cv).";

class Failures : public SizingTest
{
protected:
    Failures()
    {
        state.ValveModel = choice::series63;
        state.PressUnits = "PSI";
    }

    /// 8 SCFH a gpm, and the breathing of a large tank with API-2000; a gravity that makes `GasFactor` 1.
    void size(const std::string& pumpRate, const std::string& pressure, const char* method = choice::directDisplacement)
    {
        state.SizingMethod = method;
        screen.boxes = {{Box::txtPumpRate, pumpRate},
                        {Box::txtPressure, pressure},
                        {Box::txtSpecGrav, "0.97"},
                        {Box::txtTankVolume, "1000000"}};
        messages.texts.clear();
        cmdCalcFlowRate_Click(sizing);
    }
    std::string shown(Label label) const { return screen.caption(label); }
    std::string valve() const
    {
        return shown(Label::lblCV) + " " + shown(Label::lblMaxValveCapacity) + " " + shown(Label::lblValveBodySize) +
               " " + shown(Label::lblPercentValveCapacity) + " " + shown(Label::lblSGGas2);
    }
};

TEST_F(Failures, LargeTankLookupsGiveNothingWhereTheTableCannotAnswer)
{
    sql("CREATE TABLE USLargeTank (TankVol REAL, Pad REAL, DepadHFP, DepadLFP REAL)");
    sql("INSERT INTO USLargeTank VALUES (840000, 19000, 12000, 21000), (1500000, 30000, '18000.5', 31000), "
        "(1500000, 31000, 1, 1), (1600000, 32000, NULL, 'many'), (1700000, 1, 'few', 1)");
    EXPECT_EQ(modGetLargeTankBRPad(sizing, 839999), 0); // no row below
    EXPECT_EQ(modGetLargeTankBRPad(sizing, 1700001), 0);
    EXPECT_EQ(modGetLargeTankBRPad(sizing, 1500000), 30000);        // the first of two equal volumes
    EXPECT_EQ(modGetLargeTankBRDepadHFP(sizing, 840000), 12000);    // stored as a whole number
    EXPECT_EQ(modGetLargeTankBRDepadHFP(sizing, 1500000), 18000.5); // and as text
    EXPECT_EQ(modGetLargeTankBRDepadHFP(sizing, 1600000), 0);       // empty value
    EXPECT_TRUE(messages.texts.empty());

    screen.boxes[Box::txtPumpRate] = "100";
    EXPECT_EQ(modGetLargeTankBRDepadLFP(sizing, 1600000), 0);
    EXPECT_EQ(modGetLargeTankBRDepadHFP(sizing, 1700000), 0);
    EXPECT_EQ(messages.texts, (std::vector<std::string>{"Error Code 13; modGetLargeTankBRDepadLFP",
                                                        "Error Code 13; modGetLargeTankBRDepadHFP"}));
    EXPECT_EQ(screen.text(Box::txtPumpRate), "") << "the form is emptied";
    EXPECT_FALSE(state.SizingError);
}

TEST_F(Failures, DisplayRoundingCutsTowardsMinusInfinity)
{
    EXPECT_EQ(Round1Place(sizing, 0.699999988079071), 0.6); // a single 0.7, widened
    EXPECT_EQ(Round1Place(sizing, -2.97), -3.0);
    EXPECT_EQ(Round2Places(sizing, 0.29), 0.28); // the double lies below
    EXPECT_EQ(Round2Places(sizing, -0.001), -0.01);
    EXPECT_FALSE(state.SizingError);
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(Round1Place(sizing, largest) + Round2Places(sizing, largest), 0);
    EXPECT_TRUE(state.SizingError);
    EXPECT_EQ(messages.texts,
              (std::vector<std::string>{"Value too large. Round1Place", "Value too large. Round2Places"}));
}

TEST_F(Failures, ARefusalKeepsWhatTheSizingBeforeLeft)
{
    capacityTable("any", "(10, 10000, '2\"', 10), (1000, 10000, '2\"', 10)");
    size("937.5", "30");
    EXPECT_EQ(state.Comments, nextLarger);
    screen.captions[Label::lblSGGas2] = "earlier";
    size(".", "30"); // no number: not a word
    EXPECT_EQ(shown(Label::lblComments), nextLarger);
    size("9375", "30"); // 75000: no valve
    EXPECT_EQ(valve(), "10 10000 2\" 75 earlier");
    EXPECT_EQ(state.Comments + state.ValveBodySize, nextLarger + "2\"");

    sql("INSERT INTO any VALUES (10, 10, '2\"', 20), (1000, 10000.2, '3\"', 20); UPDATE any SET flow = 10 WHERE "
        "Pressure = 10");
    size("1249", "200"); // 9992: at 200 psi Cv 10 and then Cv 20 pass less
    EXPECT_TRUE(shown(Label::lblComments).starts_with("You have reached or exceeded")) << shown(Label::lblComments);
    EXPECT_EQ(state.Comments + valve(), nextLarger + "    earlier");
    EXPECT_EQ(state.SelectedCv, 20);

    screen.captions[Label::lblPercentValveCapacity] = "75";
    state.ValveModel = choice::series61;
    size("1", "20"); // the model's rule is broken by whatever valve the duty takes
    EXPECT_EQ(valve(), "    ");
}

/// A large tank that the table does not answer for breathes nothing, and the sizing goes on.
TEST_F(Failures, AFailedLargeTankLookupBreathesNothing)
{
    capacityTable("any", "(10, 10000, '2\"', 10), (100, 10000, '2\"', 10)");
    for (const char* const tables : {"SELECT 1", "CREATE TABLE USLargeTank (TankVol, Pad, DepadHFP, DepadLFP)",
                                     "INSERT INTO USLargeTank VALUES (1e6, 'x', 'x', 'x')"}) {
        sql(tables);
        size("10", "30", choice::api2000);
        if (messages.texts.empty()) {
            EXPECT_EQ(shown(Label::lblTotalFlow) + " " + shown(Label::lblCV), "80 10");
        }
    }
    // Emptied by the first message, the pressure is no number to the model rules.
    EXPECT_EQ(messages.texts,
              (std::vector<std::string>{"Error Code 13; modGetLargeTankBRPad", "Error Code 13; modGetValveData"}));
}

/// Tables that cannot be read at some step of a sizing: which routines say so, and what they leave on the form.
TEST_F(Failures, OddTablesLeaveWhatTheCaseFileSays)
{
    for (const Case& row : readCases("odd_tables.csv")) {
        sql("DROP TABLE IF EXISTS any");
        capacityTable("any", row["Rows"]);
        state.ValveModel = row["Valve Model"];
        state.ValveType = row["Valve Type"];
        screen.captions.clear();
        size(row["Pump Rate"], row["Pressure"]);
        expectOutcome(row, screen, messages);
    }
}

} // namespace

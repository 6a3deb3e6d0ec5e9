// What the routines of the engine do with entries and tables that cannot be, each by itself.

#include "base/display_rounding.h"
#include "base/interpolation.h"
#include "engine/large_tank_breathing.h"
#include "engine/required_flow.h"
#include "engine/sizing_driver.h"
#include "support/sizing_fixture.h"

#include <limits>

namespace
{

const std::string nextLarger =
    "If utilized valve capacity is greater than 70%, consider using the next larger valve capacity (Cv).";

class Failures : public SizingTest
{
protected:
    /// "Direct Displacement" of 8 SCFH a gpm; a gravity that makes `GasFactor` 1.
    void size(const char* pumpRate, const char* pressure, const char* gravity = "0.97")
    {
        state.ValveModel = choice::series63;
        state.SizingMethod = choice::directDisplacement;
        state.PressUnits = "PSI";
        screen.boxes = {{Box::txtPumpRate, pumpRate},
                        {Box::txtPressure, pressure},
                        {Box::txtSpecGrav, gravity},
                        {Box::txtTankVolume, "0"}};
        messages.texts.clear();
        cmdCalcFlowRate_Click(sizing);
    }
    std::string shown(Label label) const { return screen.caption(label); }
};

TEST_F(Failures, AFlowWithoutARealRootEndsInSilence)
{
    state.SizingCase = sizing_case::depadApi2000;
    state.SpecGrav = -1;
    state.FlashPoint = screen.boxes[Box::txtFlashPoint] = "60";
    modCalcFlowRate(sizing);
    EXPECT_TRUE(messages.texts.empty());
    EXPECT_FALSE(state.SizingError);
    EXPECT_EQ(shown(Label::lblTotalFlow), "");
    EXPECT_EQ(shown(Label::lblHFPLFP), "Low Flash Point") << "written before";
}

TEST_F(Failures, GravityThatNoSingleHoldsLeavesNoCapacity)
{
    capacityTable("any", "(10, 9000, '2\"', 10), (100, 9000, '2\"', 10)");
    size("100", "30", ("0." + std::string(100, '0') + "1").c_str());
    EXPECT_EQ(messages.texts, std::vector<std::string>{"Error Code 13: modSizeValve"});
    EXPECT_EQ(shown(Label::lblCV), "");
}

TEST_F(Failures, LargeTankLookupsGiveNothingWhereTheTableCannotAnswer)
{
    sql("CREATE TABLE USLargeTank (TankVol REAL, Pad REAL, DepadHFP REAL, DepadLFP REAL)");
    sql("INSERT INTO USLargeTank VALUES (840000, 19000, 12000, 21000), (1500000, 30000, 18000, 31000), "
        "(1500000, 31000, 1, 1), (1600000, 32000, NULL, 'many')");
    EXPECT_EQ(modGetLargeTankBRPad(sizing, 839999), 0); // no row below
    EXPECT_EQ(modGetLargeTankBRPad(sizing, 1600001), 0);
    EXPECT_EQ(modGetLargeTankBRPad(sizing, 1500000), 30000);  // the first of two equal volumes
    EXPECT_EQ(modGetLargeTankBRDepadHFP(sizing, 1600000), 0); // empty value
    EXPECT_TRUE(messages.texts.empty());

    screen.boxes[Box::txtPumpRate] = "100";
    EXPECT_EQ(modGetLargeTankBRDepadLFP(sizing, 1600000), 0);
    EXPECT_EQ(messages.texts, std::vector<std::string>{"Error Code 13; modGetLargeTankBRDepadLFP"});
    EXPECT_EQ(screen.text(Box::txtPumpRate), "") << "the form is emptied";
    EXPECT_FALSE(state.SizingError);
}

TEST_F(Failures, InterpolatesFromTheUpperPoint)
{
    EXPECT_EQ(modInterpolate(sizing, 1000000, 1200000, 1500000, 24000, 30000), 26400);
    EXPECT_EQ(modInterpolate(sizing, 10, 20, 20, 1, 7), 7);
    EXPECT_EQ(modInterpolate(sizing, 20, 20, 20, 1, 7), 0);
    EXPECT_EQ(messages.texts, std::vector<std::string>{"Error Code 11; modInterpolate"});
}

TEST_F(Failures, DisplayRoundingCutsTowardsMinusInfinity)
{
    for (const auto& [value, one, two] : {std::tuple{2.97, 2.9, 2.97},
                                          {-2.97, -3.0, -2.97},
                                          {0.9995, 0.9, 0.99},
                                          {0.29, 0.2, 0.28},
                                          {-0.001, -0.1, -0.01},
                                          {0.699999988079071, 0.6, 0.69}}) { // the last a single 0.7, widened
        EXPECT_DOUBLE_EQ(Round1Place(sizing, value), one);
        EXPECT_DOUBLE_EQ(Round2Places(sizing, value), two);
    }
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
    EXPECT_EQ(shown(Label::lblCV) + shown(Label::lblSGGas2), "10earlier");
    EXPECT_EQ(state.Comments + state.ValveBodySize, nextLarger + "2\"");
    size("1249.99", "30"); // 9999.92: looked up as 10000
    EXPECT_EQ(shown(Label::lblCV), "10");

    sql("DELETE FROM any; INSERT INTO any VALUES (1000, 10000.1, '2\"', 10), (10, 10, '2\"', 10), (10, 10, '2\"', 20), "
        "(1000, 10000.2, '3\"', 20)");
    size("1249", "200"); // 9992: Cv 10 and then Cv 20 pass less at 200 psi
    EXPECT_EQ(shown(Label::lblComments),
              "You have reached or exceeded the maximum valve capacity for the given Inlet Pressure.");
    EXPECT_EQ(shown(Label::lblCV) + shown(Label::lblValveBodySize) + shown(Label::lblMaxValveCapacity), "");
    EXPECT_EQ(state.Comments, nextLarger);
    EXPECT_EQ(state.SelectedCv, 20);
    EXPECT_EQ(shown(Label::lblSGGas2), "earlier");
}

/// The entries are copied one after another, up to the one that is refused.
TEST_F(Failures, EntriesBeforeTheRefusalAreCopied)
{
    size("12.5", "0", "1.52");
    EXPECT_EQ(state.PumpRate + state.SpecGrav, 12.5 + 1.52);
    screen.boxes[Box::txtFlashPoint] = "60";
    screen.boxes[Box::txtStoredMaterial] = "oil";
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(state.StoredMaterial + state.FlashPoint, "oil") << "the pressure is refused before the flash point";
    screen.boxes[Box::txtPressure] = "30";
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(state.FlashPoint, "60");
}

/// A large tank that the table does not answer for breathes nothing, and the sizing goes on.
TEST_F(Failures, AFailedLargeTankLookupBreathesNothing)
{
    capacityTable("any", "(10, 10000, '2\"', 10), (100, 10000, '2\"', 10)");
    state.SizingMethod = choice::api2000;
    state.ValveModel = choice::series63;
    for (const char* const tables : {"SELECT 1", "CREATE TABLE USLargeTank (TankVol, Pad, DepadHFP, DepadLFP)"}) {
        sql(tables);
        screen.boxes = {{Box::txtPumpRate, "10"},
                        {Box::txtPressure, "30"},
                        {Box::txtSpecGrav, "0.97"},
                        {Box::txtTankVolume, "1000000"}};
        cmdCalcFlowRate_Click(sizing);
        EXPECT_EQ(shown(Label::lblTotalFlow) + " " + shown(Label::lblCV), "80 10");
    }
    EXPECT_TRUE(messages.texts.empty());
    sql("INSERT INTO USLargeTank VALUES (1e6, 'x', 'x', 'x')");
    cmdCalcFlowRate_Click(sizing);
    // Emptied by the first message, the pressure is no number to the model rules.
    EXPECT_EQ(messages.texts,
              (std::vector<std::string>{"Error Code 13; modGetLargeTankBRPad", "Error Code 13; modGetValveData"}));
}

} // namespace

#include "engine/required_flow.h"

#include "base/display_rounding.h"
#include "base/interpolation.h"
#include "base/offered.h"
#include "engine/large_tank_breathing.h"
#include "engine/pressure_range.h"
#include "support/sizing_fixture.h"

#include <limits>

namespace
{

class RequiredFlow : public SizingTest
{
protected:
    RequiredFlow()
    {
        for (const char* const table : {"USLargeTank", "MetriclargeTank"})
            sql(std::string("CREATE TABLE ") + table + " (TankVol REAL, Pad REAL, DepadHFP REAL, DepadLFP REAL)");
        sql("INSERT INTO USLargeTank VALUES (840000, 19000, 12000, 21000), (1000000, 24000, 14000, 25000), "
            "(1500000, 30000, 18000, 31000), (1500000, 31000, 1, 1), (1600000, 32000, NULL, 'many')");
        sql("INSERT INTO MetriclargeTank VALUES (3000, 400, 304, 508), (3180, 500, 322, 538)");
    }

    std::string row() const
    {
        return screen.caption(Label::lblPRFlow) + " " + screen.caption(Label::lblBRFlow) + " " +
               screen.caption(Label::lblTotalFlow) + " " + screen.caption(Label::lblSGGas);
    }
};

struct FlowCase
{
    const char* sizingCase;
    const char* units;
    double pumpRate;
    double tankVolume;
    double specGrav;
    const char* flashPoint;
    const char* boilingPoint;
    const char* row; ///< pump, breathing and total flow, specific gravity
    float gasFactor;
    const char* point;
};

// Factors worked by hand: 100 gpm x 8 = 800; 10,000 gal / 42 = 238.1; 500 m3 x 0.169 = 84.5; ...
const FlowCase flowCases[] = {
    {"Pad API-2000", "US", 100, 10000, 0.97, "", "", "800 238 1038 0.97", 1.00F, "old"},
    {"Pad API-2000", "Metric", 50, 500, 1, "", "", "50 84 135 1.00", 0.99F, "old"},
    {"Pad Direct Displacement", "US", 100, 10000, 0.6, "", "", "800 0 800 0.60", 1.27F, "old"},
    {"Depad Direct Displacement", "Metric", 50, 0, 0.97, "", "", "50 0 50 0.97", 1.02F, "old"},
    {"Depad API-2000", "US", 100, 10000, 1, "100", "", "860 143 1003 1.00", 1.00F, "High Flash Point"},
    {"Depad API-2000", "US", 100, 10000, 1, "99.5", "400", "1710 238 1948 1.00", 1.00F, "Low Flash Point"},
    {"Depad API-2000", "US", 100, 10000, 1.52, "", "300", "860 143 1003 1.52", 0.81F, "High Boiling Point"},
    {"Depad API-2000", "US", 100, 10000, 1, "", "299.9", "1710 238 1948 1.00", 1.00F, "Low Boiling Point"},
    {"Depad API-2000", "Metric", 50, 500, 1, "38", "1", "50 50 101 1.00", 1.00F, "High Flash Point"},
    {"Depad API-2000", "Metric", 50, 500, 1, "37.5", "", "101 84 185 1.00", 1.00F, "Low Flash Point"},
    {"Depad API-2000", "Metric", 50, 500, 1, "", "149", "50 50 101 1.00", 1.00F, "High Boiling Point"},
    {"Depad API-2000", "Metric", 5, 10, 1, "", "148.5", "10 1.6 12 1.00", 1.00F, "Low Boiling Point"},
    // Bands of the shown flow: cut below 1 and up to 10, whole above with halves to even. Singles show: 1.01 x 1 is
    // just below 1.01.
    {"Pad Direct Displacement", "US", 0.125, 0, 1, "", "", "1 0 1 1.00", 0.99F, "old"},
    {"Pad Direct Displacement", "US", 0.37125, 0, 1, "", "", "2.9 0 2.9 1.00", 0.99F, "old"},
    {"Pad Direct Displacement", "US", 0.1249375, 0, 1, "", "", "0.99 0 0.99 1.00", 0.99F, "old"},
    {"Pad Direct Displacement", "US", 1.5625, 0, 1, "", "", "12 0 12 1.00", 0.99F, "old"},
    {"Pad Direct Displacement", "US", 1.6875, 0, 1, "", "", "14 0 14 1.00", 0.99F, "old"},
    {"Pad Direct Displacement", "US", 1.25, 0, 1, "", "", "10 0 10 1.00", 0.99F, "old"},
    // The formula up to the limit, the table (with other figures) above it.
    {"Pad API-2000", "US", 1, 840000, 1, "", "", "8 20000 20008 1.00", 0.99F, "old"},
    {"Pad API-2000", "US", 1, 1200000, 1, "", "", "8 26400 26408 1.00", 0.99F, "old"},
    {"Depad API-2000", "US", 1, 1000000, 1, "100", "", "8.6 14000 14009 1.00", 1.00F, "High Flash Point"},
    {"Depad API-2000", "US", 1, 1000000, 1, "1", "", "17 25000 25017 1.00", 1.00F, "Low Flash Point"},
    {"Pad API-2000", "US", 1, 840001, 1, "", "", "8 19000 19008 1.00", 0.99F, "old"},
    {"Pad API-2000", "Metric", 1, 3179, 1, "", "", "1 537 538 1.00", 0.99F, "old"},
    {"Pad API-2000", "Metric", 1, 3179.5, 1, "", "", "1 500 501 1.00", 0.99F, "old"},
    {"Pad API-2000", "Metric", 1, 3180, 1, "", "", "1 500 501 1.00", 0.99F, "old"},
    {"Depad API-2000", "Metric", 1, 3179.5, 1, "38", "", "1 322 323 1.00", 1.00F, "High Flash Point"},
    {"Pad API-2000", "Metric", 1, 3181, 1, "", "", "1 0 1 1.00", 0.99F, "old"}, // past the last row
};

TEST_F(RequiredFlow, FollowsCaseUnitsPointAndTankSize)
{
    for (const FlowCase& c : flowCases) {
        state.SizingCase = c.sizingCase;
        state.UnitSystem = c.units;
        state.PumpRate = c.pumpRate;
        state.TankVolume = c.tankVolume;
        state.SpecGrav = c.specGrav;
        state.FlashPoint = c.flashPoint;
        state.BoilingPoint = c.boilingPoint;
        state.HighFlashBoil = false;
        screen.boxes[Box::txtFlashPoint] = c.flashPoint;
        screen.captions = {{Label::lblHFPLFP, "old"}, {Label::lblComments, "old"}};
        modCalcFlowRate(sizing);

        const auto where = std::string(c.sizingCase) + " " + c.units + " " + c.row;
        EXPECT_EQ(row(), c.row) << where;
        EXPECT_EQ(state.GasFactor, c.gasFactor) << where;
        EXPECT_EQ(screen.caption(Label::lblHFPLFP), c.point) << where;
        EXPECT_EQ(state.HighFlashBoil, std::string(c.point).starts_with("High")) << where;
        EXPECT_EQ(comments(), "") << where;
        EXPECT_FALSE(state.SizingError) << where;
    }
    EXPECT_TRUE(messages.texts.empty());
}

TEST_F(RequiredFlow, ConversionFactorsAreSingles)
{
    state.SizingCase = "Depad API-2000";
    state.UnitSystem = "Metric";
    state.PumpRate = 5;
    state.SpecGrav = 1;
    state.FlashPoint = screen.boxes[Box::txtFlashPoint] = "1";
    modCalcFlowRate(sizing);
    EXPECT_EQ(state.PumpFlow, 5 * 2.0199999809265137);
    EXPECT_EQ(screen.caption(Label::lblPRFlow), "10");
}

TEST_F(RequiredFlow, FailuresEndItEachInItsWay)
{
    struct Case
    {
        double specGrav;
        const char* flashPoint;
        std::vector<std::string> messages;
        bool cleared;
    };
    for (const Case& c : {Case{0, "60", {"Error Code 11; modCalcFlowRate"}, true},
                          {1, ".", {"Error Code 13; modCalcFlowrate"}, true},
                          {-1, "60", {}, false}}) { // no real root: silent, nothing shown, no flag
        state.SizingCase = "Depad API-2000";
        state.SpecGrav = c.specGrav;
        state.FlashPoint = screen.boxes[Box::txtFlashPoint] = c.flashPoint;
        screen.boxes[Box::txtPumpRate] = "100";
        state.SizingError = false;
        messages.texts.clear();
        modCalcFlowRate(sizing);
        EXPECT_EQ(messages.texts, c.messages);
        EXPECT_EQ(state.SizingError, c.cleared);
        EXPECT_EQ(screen.text(Box::txtPumpRate), c.cleared ? "" : "100");
        EXPECT_EQ(screen.caption(Label::lblTotalFlow), "");
    }
}

TEST_F(RequiredFlow, LargeTankLookupsGiveNothingWhereTheTableCannotAnswer)
{
    EXPECT_EQ(modGetLargeTankBRPad(sizing, 839999), 0); // no row below
    EXPECT_EQ(modGetLargeTankBRPad(sizing, 1600001), 0);
    EXPECT_EQ(modGetLargeTankBRDepadHFP(sizing, 1600000), 0); // empty value
    EXPECT_TRUE(messages.texts.empty());

    screen.boxes[Box::txtPumpRate] = "100";
    EXPECT_EQ(modGetLargeTankBRDepadLFP(sizing, 1600000), 0);
    EXPECT_EQ(messages.texts, std::vector<std::string>{"Error Code 13; modGetLargeTankBRDepadLFP"});
    EXPECT_EQ(screen.text(Box::txtPumpRate), "");
    EXPECT_EQ(modGetLargeTankBRPad(sizing, 1200000), 26400);
    EXPECT_EQ(modGetLargeTankBRPad(sizing, 1500000), 30000); // the first of two equal volumes
    EXPECT_FALSE(state.SizingError);
}

TEST_F(RequiredFlow, InterpolatesFromTheUpperPoint)
{
    EXPECT_EQ(modInterpolate(sizing, 1000000, 1200000, 1500000, 24000, 30000), 26400);
    EXPECT_EQ(modInterpolate(sizing, 10, 20, 20, 1, 7), 7);
    EXPECT_EQ(modInterpolate(sizing, 10, 10, 20, 1, 7), 1);
    EXPECT_EQ(modInterpolate(sizing, 20, 20, 20, 1, 7), 0);
    EXPECT_EQ(messages.texts, std::vector<std::string>{"Error Code 11; modInterpolate"});
}

TEST_F(RequiredFlow, DisplayRoundingCutsTowardsMinusInfinity)
{
    const double largest = std::numeric_limits<double>::max();
    for (const auto& [value, one, two] : {std::tuple{2.97, 2.9, 2.97},
                                          {10.0, 10.0, 10.0},
                                          {-2.97, -3.0, -2.97},
                                          {1.05, 1.0, 1.05},
                                          {0.9995, 0.9, 0.99},
                                          {0.29, 0.2, 0.28},
                                          {-0.001, -0.1, -0.01},
                                          {0.699999988079071, 0.6, 0.69}}) {
        EXPECT_DOUBLE_EQ(Round1Place(sizing, value), one);
        EXPECT_DOUBLE_EQ(Round2Places(sizing, value), two);
    }
    EXPECT_FALSE(state.SizingError);
    EXPECT_EQ(Round1Place(sizing, largest), 0);
    EXPECT_EQ(Round2Places(sizing, largest), 0);
    EXPECT_TRUE(state.SizingError);
    EXPECT_EQ(messages.texts,
              (std::vector<std::string>{"Value too large. Round1Place", "Value too large. Round2Places"}));
}

TEST_F(RequiredFlow, PressureRangesIncludeTheirEnds)
{
    struct Case
    {
        const char* model;
        const char* type;
        const char* units;
        double pressure;
        const char* refusal;
    };
    const char* const psi = "Supply Pressure must be between 1 and 200 PSI.";
    const char* const inwc = "Differential Pressure must be between 2 and 77 in wc.";
    for (const Case& c :
         {Case{"Series 61", "Pad", "PSI", 0.99, psi},
          {"Series 61", "Pad", "PSI", 1, ""},
          {"Series 61", "Depad", "PSI", 200, ""}, // the type plays no part for this model
          {"Series 61", "Depad", "PSI", 200.01, psi},
          {"Series 63", "Pad", "kg/cm2", 1.75, "Supply Pressure must be between 1.76 and 14.06 kg/cm2."},
          {"Series 63", "Depad", "in wc", 1.9, inwc},
          {"Series 63", "Depad", "in wc", 77, ""},
          {"Series 63", "Depad", "in wc", 77.1, inwc},
          {"Series 63", "Depad", "kPa", 1e9, ""}, // no such range
          {"Series 61", "Pad", "mbar", 0, ""}}) {
        state.ValveModel = c.model;
        state.ValveType = c.type;
        state.PressUnits = c.units;
        state.InputPressure = c.pressure;
        state.SizingError = false;
        screen.captions.clear();
        modMaxMinCheck(sizing);
        EXPECT_EQ(comments(), c.refusal);
        EXPECT_EQ(state.SizingError, *c.refusal != '\0');
    }
}

TEST_F(RequiredFlow, PressureMessagesNameTheLimits)
{
    for (const Offer& range : offers) {
        const std::string limits = " " + numbers.general(range.lowest) + " and " + numbers.general(range.highest) +
                                   " " + range.pressUnits + ".";
        EXPECT_TRUE(std::string(range.message).ends_with(limits)) << range.message;
    }
}

} // namespace

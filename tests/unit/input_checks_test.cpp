#include "engine/input_checks.h"

#include "support/sizing_fixture.h"

namespace
{

using Boxes = std::map<Box, std::string>;

constexpr const char* untouched = "earlier text";

struct Case
{
    const char* valveType;
    const char* method;
    const char* units;
    Boxes changed;       ///< against entries that pass
    const char* message; ///< nullptr: passes; `untouched`: refused silently
};

const Case cases[] = {
    {"Pad", "API-2000", "US", {}, nullptr},
    {"Pad", "API-2000", "US", {{Box::txtPressure, ""}}, "Please enter Pressure and Pump-Rate information."},
    {"Pad",
     "API-2000",
     "US",
     {{Box::txtPumpRate, ""}, {Box::txtSpecGrav, ""}},
     "Please enter Pressure and Pump-Rate information."},
    {"Pad", "API-2000", "US", {{Box::txtSpecGrav, ""}}, "Please enter the specific gravity of the blanketing gas."},
    {"Depad", "API-2000", "US", {{Box::txtSpecGrav, ""}}, "Please enter the specific gravity of the vented gas."},
    {"Pad", "API-2000", "US", {{Box::txtSpecGrav, "."}}, untouched},
    {"Pad", "API-2000", "US", {{Box::txtPumpRate, "1.2.3"}}, untouched},
    {"Pad", "API-2000", "US", {{Box::txtPressure, "."}, {Box::txtTankVolume, ""}}, untouched},
    {"Pad", "API-2000", "US", {{Box::txtTankVolume, ""}}, "Please enter the Tank Volume."},
    {"Pad", "API-2000", "US", {{Box::txtTankVolume, "."}}, untouched},
    {"Pad", "Direct Displacement", "US", {{Box::txtTankVolume, ""}}, untouched},
    {"Pad", "Direct Displacement", "US", {{Box::txtTankVolume, "0"}}, nullptr},
    {"Pad", "API-2000", "US", {{Box::txtPumpRate, "100000"}}, nullptr},
    {"Pad",
     "API-2000",
     "US",
     {{Box::txtPumpRate, "100000.5"}, {Box::txtPressure, "0"}},
     "Pump-Rate will exceed the maximum available valve capacity."},
    {"Pad",
     "API-2000",
     "US",
     {{Box::txtPumpRate, std::string(400, '9')}},
     "Pump-Rate will exceed the maximum available valve capacity."},
    {"Pad",
     "API-2000",
     "US",
     {{Box::txtPressure, "0"}, {Box::txtPumpRate, "0"}},
     "Supply Pressure must be greater than zero."},
    {"Depad", "API-2000", "US", {{Box::txtPressure, "0"}}, "Differential Pressure must be greater than zero."},
    {"Pad", "API-2000", "US", {{Box::txtPumpRate, "0"}}, "Pump-out rate must be greater than zero."},
    {"Depad", "API-2000", "US", {{Box::txtPumpRate, "0"}}, "Pump-in rate must be greater than zero."},
    {"Depad",
     "API-2000",
     "US",
     {{Box::txtFlashPoint, ""}, {Box::txtTankVolume, "0"}},
     "Please enter the Flash Point and/or Boiling Point of the Stored Material."},
    {"Depad", "API-2000", "US", {{Box::txtFlashPoint, ""}, {Box::txtBoilingPoint, "300"}}, nullptr},
    {"Depad", "Direct Displacement", "US", {{Box::txtFlashPoint, ""}}, nullptr},
    {"Pad", "API-2000", "US", {{Box::txtFlashPoint, ""}}, nullptr},
    {"Pad", "API-2000", "US", {{Box::txtTankVolume, "7560000"}}, nullptr},
    {"Pad",
     "API-2000",
     "US",
     {{Box::txtTankVolume, "7560001"}},
     "There are special requirements for tanks larger than 7,560,000 gallons. Refer to API Publication 2000."},
    {"Pad", "API-2000", "US", {{Box::txtTankVolume, "0"}}, "Tank Volume must be greater than zero."},
    {"Pad", "API-2000", "Metric", {{Box::txtTankVolume, "30000"}}, nullptr},
    {"Pad",
     "API-2000",
     "Metric",
     {{Box::txtTankVolume, "30000.5"}},
     "There are special requirements for tanks larger than 30,000 cubic meters."},
    {"Pad", "API-2000", "Metric", {{Box::txtTankVolume, "0"}}, "Tank Volume must be greater than zero."},
    {"Pad", "Direct Displacement", "Metric", {{Box::txtTankVolume, "99999"}}, nullptr},
};

class InputChecks : public SizingTest
{
};

TEST_F(InputChecks, RefuseInTheirOrderWithTheirMessages)
{
    for (const Case& c : cases) {
        state = SizingState();
        state.ValveType = c.valveType;
        state.SizingMethod = c.method;
        state.UnitSystem = c.units;
        screen.captions = {{Label::lblComments, untouched}};
        screen.boxes = {{Box::txtPumpRate, "100"},   {Box::txtPressure, "60"},       {Box::txtSpecGrav, "0.97"},
                        {Box::txtTankVolume, "500"}, {Box::cmbBlanketingGas, "N 2"}, {Box::txtFlashPoint, "60"}};
        for (const auto& [box, text] : c.changed)
            screen.boxes[box] = text;

        modErrorCheck(sizing);
        const std::string where = std::string(c.valveType) + " " + c.method + ": " + (c.message ? c.message : "passes");
        EXPECT_EQ(state.InputError, c.message != nullptr) << where;
        EXPECT_EQ(comments(), c.message != nullptr ? c.message : untouched) << where;
    }
    EXPECT_TRUE(messages.texts.empty());
}

TEST_F(InputChecks, CopyWhatStandsBeforeTheRefusal)
{
    screen.boxes = {{Box::txtPumpRate, "12.5"},     {Box::txtPressure, "0"},          {Box::txtSpecGrav, "1.52"},
                    {Box::txtTankVolume, "500"},    {Box::cmbBlanketingGas, "Argon"}, {Box::txtFlashPoint, "60"},
                    {Box::txtStoredMaterial, "oil"}};
    modErrorCheck(sizing); // the pressure is refused
    EXPECT_EQ(state.PumpRate, 12.5);
    EXPECT_EQ(state.SpecGrav, 1.52);
    EXPECT_EQ(state.TankVolume, 500);
    EXPECT_EQ(state.BlanketingGas, "Argon");
    EXPECT_EQ(state.StoredMaterial, "oil");
    EXPECT_EQ(state.FlashPoint, "");
    screen.boxes[Box::txtPressure] = "1";
    modErrorCheck(sizing);
    EXPECT_EQ(state.FlashPoint, "60");
}

} // namespace

#include "capacity/table_lookups.h"
#include "capacity/valve_check.h"
#include "capacity/valve_selection.h"
#include "support/sizing_fixture.h"

#include <cmath>

namespace
{

class ValveSelection : public SizingTest
{
protected:
    /// A sizing of `flow` at `pressure` whose flow calculation and checks have passed.
    void duty(const std::string& type, const std::string& model, const std::string& units, double pressure, double flow,
              float gasFactor = 1)
    {
        state.ValveType = type;
        state.SizingCase = type + " API-2000";
        state.ValveModel = model;
        state.PressUnits = units;
        state.InputPressure = pressure;
        screen.boxes[Box::txtPressure] = numbers.general(pressure);
        state.TotalFlow = flow;
        state.ShownTotalFlow = static_cast<std::int32_t>(std::nearbyint(flow));
        state.GasFactor = gasFactor;
        state.SizingError = false;
        screen.captions.clear();
    }

    std::string valve() const
    {
        return screen.caption(Label::lblCV) + "|" + screen.caption(Label::lblValveBodySize) + "|" +
               screen.caption(Label::lblMaxValveCapacity);
    }
};

TEST_F(ValveSelection, LooksUpTheFirstAdequateRow)
{
    capacityTable("psi_Pad", "(20, 100, '1/2\"', 0.4), (20, 2000, '1\"', 1), (10, 50, '1/2\"', 0.4), "
                             "(10, 1000, '1\"', 1), (30, 3000, '1\"', 1), (30, 9000, '2\"', 20), (NULL, 1, 'x', 5), "
                             "(40, NULL, 'y', 6)");
    struct Case
    {
        double pressure;
        int flow;
        double cv;
        const char* size;
    };
    for (const Case& c : {Case{10, 49, 0.4, "1/2\""},
                          {10, 50, 1, "1\""}, // equal is not enough
                          {10, 999, 1, "1\""},
                          {10, 1000, 1, "1\""}, // on into the next pressure
                          {10.5, 60, 0.4, "1/2\""},
                          {20, 3000, 20, "2\""},
                          {20, 9000, 0, ""},
                          {31, 0, 0, ""}}) {
        EXPECT_EQ(modLookupCVPad(sizing, c.pressure, c.flow), c.cv) << c.pressure << " " << c.flow;
        EXPECT_EQ(modLookupSizePad(sizing, c.pressure, c.flow), c.size) << c.pressure << " " << c.flow;
    }

    state.SelectedCv = 1;
    EXPECT_EQ(modLookupSCFHPad(sizing, 15, 500), 1500);
    EXPECT_EQ(modLookupSCFHPad(sizing, 20, 1999), 2000);
    EXPECT_EQ(modLookupSCFHPad(sizing, 20, 2000), 2000) << "interpolated back from (30, 3000)";
    EXPECT_EQ(modLookupSCFHPad(sizing, 5, 0), 0) << "no row before the adequate one";
    EXPECT_EQ(modLookupSCFHPad(sizing, 31, 0), 0);
    EXPECT_TRUE(messages.texts.empty());
    EXPECT_FALSE(state.SizingError);
}

TEST_F(ValveSelection, CvLiteralIsFoundInEveryLocale)
{
    capacityTable("psi_Pad", "(10, 50, 'a', 0.2), (10, 60, 'b', 0.4), (10, 700, 'c', 7.5), (10, 70, 'd', 7), "
                             "(10, 900, 'e', 12.1)");
    for (const NumberText::Signs& signs :
         {NumberText::Signs{}, {",", ".", "3;0", ","}, {"\u066b", "", "", "\u066b"}, {".", ",", "3;0", ","}}) {
        numbers = NumberText(signs);
        for (const auto& [cv, flow] : {std::pair{0.2F, 50.0}, {0.4F, 60.0}, {7.5F, 700.0}, {12.1F, 900.0}}) {
            state.SelectedCv = cv;
            if (cv < 1)
                modStoreCV(sizing);
            EXPECT_EQ(modLookupSCFHPad(sizing, 10, 1), flow);
            EXPECT_EQ(modLookupSCFHDepad(sizing, 10, 1), flow);
        }
        EXPECT_EQ(state.CvText, "0.4");
    }
}

TEST_F(ValveSelection, BadValuesAreMismatchesOnlyWhereTheyAreMet)
{
    capacityTable("psi_Pad", "(10, 50, '1', 1), (20, 60, NULL, 'big'), (20, 70, x'00', 2), ('high', 1e6, '2', 3)");
    const auto outcome = [&](auto call) {
        messages.texts.clear();
        screen.boxes[Box::txtPressure] = "kept";
        call();
        EXPECT_EQ(screen.text(Box::txtPressure), messages.texts.empty() ? "kept" : "");
        return messages.texts.empty() ? std::string() : messages.texts.front();
    };
    EXPECT_EQ(outcome([&] { EXPECT_EQ(modLookupCVPad(sizing, 10, 49), 1); }), "");
    EXPECT_EQ(outcome([&] { EXPECT_EQ(modLookupCVPad(sizing, 20, 59), 0); }), "Error Code 13; modLookupCVPad");
    EXPECT_EQ(outcome([&] { EXPECT_EQ(modLookupSizeDepad(sizing, 20, 59), ""); }), "");
    EXPECT_EQ(outcome([&] { modLookupSizePad(sizing, 20, 69); }), "Error Code 13; modLookupSizePad");
    EXPECT_EQ(outcome([&] { modLookupCVDepad(sizing, 30, 0); }), "Error Code 13; modLookupCVDepad");

    sql("INSERT INTO psi_Pad VALUES (50, 80, 's', 9), (50, 90, 's', 9)");
    state.SelectedCv = 9;
    EXPECT_EQ(outcome([&] { EXPECT_EQ(modLookupSCFHDepad(sizing, 45, 85), 0); }), "Error Code 11; modInterpolate");
}

TEST_F(ValveSelection, PadRoundsBeforeMultiplyingAndDepadAfter)
{
    capacityTable("psi_Pad", "(25, 1234.6, '1\"', 1), (25, 5000, '1\"', 2)");
    duty("Pad", "Series 61", "PSI", 25, 100, 0.98F);
    modGetValveData(sizing);
    EXPECT_EQ(state.MaxValveCap, static_cast<float>(static_cast<double>(0.98F) * 1235));
    EXPECT_EQ(valve(), "1|1\"|1210.30004882812");

    duty("Depad", "Series 63", "PSI", 25, 100, 0.98F);
    modGetValveData(sizing);
    EXPECT_EQ(valve(), "1|1\"|1210");
    EXPECT_FALSE(state.SizingError);
}

TEST_F(ValveSelection, SizesForTheShownFlowInTheTablesBasis)
{
    capacityTable("psi_Pad", "(25, 1000, 'a', 1), (25, 2000, 'b', 2)");
    for (const char* const type : {"Pad", "Depad"}) {
        duty(type, "Series 61", "PSI", 25, 1260, 1.27F); // 1260 / 1.27 = 992
        modGetValveData(sizing);
        EXPECT_EQ(state.SelectedCv, 1);
        duty(type, "Series 61", "PSI", 25, 499.6, 0.5F); // shown as 500: 1000, which Cv 1 does not exceed
        modGetValveData(sizing);
        EXPECT_EQ(state.SelectedCv, 2);
    }
}

TEST_F(ValveSelection, StepsUpInTheTablesBasis)
{
    capacityTable("any", "(30, 45, 'u', 0.4), (30, 45, 'u', 6), (30, 100, 'a', 0.2), (30, 200, 'b', 0.4), "
                         "(30, 200, 'b', 6), (30, 230, 't', 9), (30, 300, 'c', 1)");
    for (const auto& [type, cv] : {std::pair{"Pad", 0.2F}, {"Depad", 3.0F}})
        for (const auto& [flow, shown] : {
                 std::pair{50.0, "|a|57"},  // 50 / 1.27 = 39: the row of 45, 57 of the gas
                 std::pair{60.0, "|t|254"}, // 200, 254 of the gas; the first body above 254 / 1.27 = 200
             }) {
            duty(type, "Series 63", "PSI", 30, flow, 1.27F);
            state.SelectedCv = cv;
            state.MaxValveCap = 50;
            modCheckValveData(sizing);
            EXPECT_EQ(valve(), shown) << type;
        }
}

TEST_F(ValveSelection, ModelRulesRefuseLowSupplyPressures)
{
    capacityTable("psi_Pad", "(1000, 100, '1/2\"', 0.4), (1000, 1000, '1\"', 1), (0, 0, '', 1), (0, 0, '', 0.4)");
    const std::string larger = "Series 61 valves larger than 1/2 inch must have a minimum supply pressure of ";
    struct Case
    {
        const char* model;
        const char* units;
        double pressure;
        double flow;
        std::string message;
    };
    for (const Case& c :
         {Case{"Series 61", "PSI", 20, 50, ""},
          {"Series 61", "PSI", 20, 500, larger + "25 psi."},
          {"Series 61", "PSI", 25, 500, ""},
          {"Series 61", "kg/cm2", 1.79, 500, larger + "1.8 kg/cm2."},
          {"Series 61", "kg/cm2", 1.8, 500, ""},
          {"Series 61", "kPa", 171.9, 500, larger + "172 kPa."},
          {"Series 63", "PSI", 24.9, 50, "Series 63 valves must have a minimum supply pressure of 25 psi."},
          {"Series 63", "kg/cm2", 1.79, 50, "Series 63 valves must have a minimum supply pressure of 1.8 kg/cm2."},
          {"Series 63", "kPa", 171, 50, "Series 63 valves require a minimum supply pressure of 172 kPa."},
          {"Series 63", "kPa", 172, 50, ""}}) {
        duty("Pad", c.model, c.units, c.pressure, c.flow);
        state.MaxValveCap = -1;
        screen.captions[Label::lblPercentValveCapacity] = screen.captions[Label::lblSGGas2] = "earlier";
        modGetValveData(sizing);
        EXPECT_EQ(comments(), c.message);
        EXPECT_EQ(state.SizingError, !c.message.empty()) << c.model << c.units << c.pressure;
        if (state.SizingError) {
            EXPECT_EQ(valve(), "||");
            EXPECT_EQ(screen.caption(Label::lblPercentValveCapacity) + screen.caption(Label::lblSGGas2), "");
            EXPECT_EQ(state.MaxValveCap, -1) << "keeps that of the sizing before";
            EXPECT_NE(state.ValveBodySize, "");
        }
    }
    duty("Depad", "Series 61", "PSI", 2, 500);
    modGetValveData(sizing);
    EXPECT_FALSE(state.SizingError) << "the rules are those of pad valves";
}

TEST_F(ValveSelection, NoValveForTheDuty)
{
    capacityTable("psi_Pad", "(25, 1000, 'a', 1)");
    duty("Pad", "Series 61", "PSI", 25, 5000);
    screen.captions[Label::lblCV] = "earlier";
    modGetValveData(sizing);
    EXPECT_EQ(valve(), "earlier||");
    EXPECT_EQ(comments(), "You have exceeded the maximum available valve capacity for the given supply pressure.");
    EXPECT_TRUE(state.SizingError);

    duty("Depad", "Series 63", "PSI", 25, 5000);
    screen.captions[Label::lblCV] = "earlier";
    modGetValveData(sizing);
    EXPECT_EQ(valve(), "0||");
    EXPECT_EQ(comments(),
              "You have exceeded the maximum available valve capacity for the given differential pressure.");
    EXPECT_TRUE(state.SizingError);

    duty("Pad", "Series 61", "PSI", 25, 100, 0);
    modGetValveData(sizing);
    EXPECT_EQ(messages.texts, std::vector<std::string>{"Error Code 11; modGetValveData"});
    EXPECT_TRUE(state.SizingError);
}

struct StepCase
{
    const char* type;
    double pressure;
    float cv;
    float flow;
    const char* valve; ///< captions afterwards; they start as "-|-|-"
    float cvAfter;
    const char* comment;
};

TEST_F(ValveSelection, CheckStepsTheCvUpOnce)
{
    capacityTable("psi_Pad", "(10, 90, '1/2\"', 0.2), (10, 190, '1/2\"', 0.4), (10, 200, 'n', 5), (10, 290, '1\"', 1),"
                             "(30, 100, '1/2\"', 0.2), (30, 200, '1/2\"', 0.4), (30, 300, '1\"', 1),"
                             "(30, 9100, '2\"', 45), (30, 9200, '3\"', 60), (30, 9300, 'n', 5), (30, 9999, 'x', 999)");
    const std::string range = "Series 61 valves larger than 1/2 inch must have a minimum supply pressure of 25 psi.";
    for (const StepCase& c : {
             StepCase{"Pad", 30, 1, 49.9F, "-|-|-", 1, "-"}, // below the capacity of 50
             StepCase{"Pad", 30, 0.2F, 50, "-|1\"|200", 0.4F, "-"},
             StepCase{"Pad", 30, 45, 60, "-|n|9200", 60, "-"}, // the first body whose capacity exceeds 9200
             StepCase{"Pad", 30, 60, 60, "||", 60,
                      "You have exceeded the maximum available valve capacity for the given inlet pressure."},
             StepCase{"Pad", 30, 5, 60, "-|x|9300", 5, "-"}, // outside the series
             StepCase{"Pad", 20, 0.4F, 60, "-|-|-", 1, range.c_str()},
             StepCase{"Pad", 30, 1, 60, "-|1/2\"|0", 2, "-"}, // no such valve: the first body of all
             StepCase{"Depad", 30, 280, 60, "||", 280,
                      "You have exceeded the maximum available valve capacity for the given differential pressure."},
             StepCase{"Depad", 30, 60, 60, "-|n|9200", 60, "-"}, // no depad valve of that Cv: stays
         }) {
        duty(c.type, "Series 61", "PSI", c.pressure, static_cast<double>(c.flow));
        state.SelectedCv = c.cv;
        state.MaxValveCap = 50;
        screen.captions = {{Label::lblCV, "-"},
                           {Label::lblValveBodySize, "-"},
                           {Label::lblMaxValveCapacity, "-"},
                           {Label::lblComments, "-"}};
        modCheckValveData(sizing);
        EXPECT_EQ(valve(), c.valve) << c.type << c.cv;
        EXPECT_EQ(state.SelectedCv, c.cvAfter) << c.type << c.cv;
        EXPECT_EQ(comments(), c.comment);
        EXPECT_FALSE(state.SizingError);
    }
    EXPECT_TRUE(messages.texts.empty());

    duty("Pad", "Series 61", "PSI", 30, 50.000001); // a single 50: equal to the capacity
    state.SelectedCv = 0.2F;
    state.MaxValveCap = 50;
    modCheckValveData(sizing);
    EXPECT_EQ(state.SelectedCv, 0.4F);

    duty("Pad", "Series 61", "PSI", 30, 60, 0);
    state.MaxValveCap = 50;
    modCheckValveData(sizing);
    EXPECT_EQ(messages.texts, std::vector<std::string>{"Error Code 11; modCheckValveData"});
    EXPECT_FALSE(state.SizingError);
}

} // namespace

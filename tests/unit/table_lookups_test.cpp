#include "capacity/table_lookups.h"

#include "base/failure.h"
#include "capacity/valve_check.h"
#include "engine/sizing_driver.h"
#include "support/sizing_fixture.h"

#include <chrono>
#include <thread>

namespace
{

class TableLookups : public SizingTest
{
protected:
    /// The message of a lookup, "" for none; expects the main form emptied with a message and untouched without.
    template <typename Lookup>
    std::string messageOf(Lookup lookup)
    {
        store.beginClick();
        messages.texts.clear();
        screen.boxes[Box::txtPressure] = "kept";
        lookup();
        EXPECT_EQ(screen.text(Box::txtPressure), messages.texts.empty() ? "kept" : "");
        EXPECT_FALSE(state.SizingError);
        return messages.texts.empty() ? std::string() : messages.texts.front();
    }
};

TEST_F(TableLookups, FindTheFirstAdequateRow)
{
    capacityTable("psi_Pad", "(20, 100, '1/2\"', 0.4), (20, 2000, '1\"', 1), (10, 50, '1/2\"', 0.4), "
                             "(10, 1000, '1\"', 1), (30, 3000, '1\"', 1), (30, 9000, '2\"', 20), (NULL, 1, 'x', 5), "
                             "(40, NULL, 'y', 6)");
    for (const auto& [pressure, flow, found] : {std::tuple{10.0, 50, "1 1\""}, // equal is not enough
                                                {10.0, 1000, "1 1\""},         // on into the next pressure
                                                {20.0, 3000, "20 2\""},
                                                {20.0, 9000, "0 "},
                                                {31.0, 0, "0 "}})
        EXPECT_EQ(numbers.general(modLookupCVPad(sizing, pressure, flow)) + " " +
                      modLookupSizeDepad(sizing, pressure, flow),
                  found);
    state.SelectedCv = 1;
    EXPECT_EQ(modLookupSCFHPad(sizing, 20, 2000), 2000) << "interpolated back from (30, 3000)";
    EXPECT_EQ(modLookupSCFHPad(sizing, 5, 0), 0) << "no row before the adequate one";
    EXPECT_EQ(modLookupSCFHPad(sizing, 31, 0), 0);
    sql("INSERT INTO psi_Pad VALUES (50, 75, 'z', 7.5)");
    numbers = NumberText({",", ".", "3;0", ","});
    state.SelectedCv = 7.5F;
    store.beginClick();
    EXPECT_EQ(modLookupSCFHPad(sizing, 50, 0), 75) << "the query has 7,5";
    EXPECT_TRUE(messages.texts.empty());
}

TEST_F(TableLookups, BadValuesAreMismatchesOnlyWhereTheyAreMet)
{
    capacityTable("psi_Pad", "(10, 50, '1', 1), (20, 60, NULL, 'big'), (20, 70, x'00', 2), ('high', 1e6, '2', 3)");
    EXPECT_EQ(messageOf([&] { EXPECT_EQ(modLookupCVPad(sizing, 10, 49), 1); }), "");
    EXPECT_EQ(messageOf([&] { EXPECT_EQ(modLookupCVPad(sizing, 20, 59), 0); }), "Error Code 13; modLookupCVPad");
    EXPECT_EQ(messageOf([&] { EXPECT_EQ(modLookupSizeDepad(sizing, 20, 59), ""); }), "");
    EXPECT_EQ(messageOf([&] { modLookupSizePad(sizing, 20, 69); }), "Error Code 13; modLookupSizePad");
    EXPECT_EQ(messageOf([&] { modLookupSizeDepad(sizing, 20, 69); }), "Error Code 13; modLookupSizeDepad");
    EXPECT_EQ(messageOf([&] { modLookupCVDepad(sizing, 30, 0); }), "Error Code 13; modLookupCVDepad");
    state.SelectedCv = 3;
    EXPECT_EQ(messageOf([&] { modLookupSCFHPad(sizing, 30, 0); }), "Error Code 13; modLookupSCFHPad");
    EXPECT_EQ(messageOf([&] { modLookupSCFHDepad(sizing, 30, 0); }), "Error Code 13; modLookupSCFHDepad");
    state.SelectedCv = 9;
    sql("INSERT INTO psi_Pad VALUES (50, 80, 's', 9), (50, 90, 's', 9)");
    EXPECT_EQ(messageOf([&] { EXPECT_EQ(modLookupSCFHDepad(sizing, 45, 85), 0); }), "Error Code 11; modInterpolate");
}

/// On it a click loses its time as soon as it shows a Cv.
struct SlowScreen : PlainScreen
{
    CapacityStore& store;

    explicit SlowScreen(CapacityStore& used) : store(used) {}
    void setCaption(Label label, const std::string& shown) override
    {
        PlainScreen::setCaption(label, shown);
        if (label != Label::lblCV || shown.empty())
            return;
        const CapacityRows rows = store.table("psi_Pad", {});
        std::this_thread::sleep_for(std::chrono::milliseconds(2100));
    }
};

/// A click has two seconds for its walks. A message in a lookup waits for the user and takes none of them.
TEST_F(TableLookups, EndAfterTwoSecondsWithoutTheMessages)
{
    struct : MessageBox
    {
        void show(const std::string&) override { std::this_thread::sleep_for(std::chrono::milliseconds(2100)); }
    } read;
    SizingContext readSlowly{state, screen, read, numbers, store};
    capacityTable("psi_Pad", "(50, 80, 's', 9), (50, 90, 's', 9)");
    sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2000) "
        "INSERT INTO psi_Pad SELECT i / 2000.0, i, 's', 9 FROM n"); // as many as take a look at the clock
    state.SelectedCv = 9;
    EXPECT_EQ(modLookupSCFHDepad(readSlowly, 45, 85), 0);
    EXPECT_EQ(modLookupSCFHDepad(readSlowly, 50, 85), 90);

    CapacityRows rows = store.table("psi_Pad", {});
    std::this_thread::sleep_for(std::chrono::milliseconds(2100)); // as a walk that never ends
    EXPECT_THROW(while (!rows.atEnd()) rows.next(), SilentFailure);
    EXPECT_EQ(store.whyUnreadable(), "capacities.mdb takes too much time or memory to read");

    SlowScreen slow(store);
    slow.boxes = {
        {Box::txtPumpRate, "10"}, {Box::txtPressure, "50"}, {Box::txtSpecGrav, "0.97"}, {Box::txtTankVolume, "1"}};
    state.PressUnits = "PSI";
    SizingContext slowly{state, slow, messages, numbers, store};
    cmdCalcFlowRate_Click(slowly);
    EXPECT_EQ(slow.caption(Label::lblCV), "") << "a valve that was found before the time was over is none";
    EXPECT_TRUE(slow.caption(Label::lblComments).starts_with("You have exceeded")) << slow.caption(Label::lblComments);
    screen.boxes = slow.boxes;
    cmdCalcFlowRate_Click(sizing);
    EXPECT_EQ(screen.caption(Label::lblCV), "9") << "the next click has two seconds of its own";
}

/// Tables that `build_capacities` warns of: a Cv outside the series stays, and one without rows has no capacity.
TEST_F(TableLookups, TheCheckOfTheValveGoesOnWithAnOddTable)
{
    capacityTable("psi_Pad", "(30, 45, 'a', 0.4), (30, 9300, 'n', 5), (30, 9999, 'x', 999)");
    state.InputPressure = 30;
    screen.boxes[Box::txtPressure] = "30";
    for (const auto& [cv, gasFactor, outcome] :
         {std::tuple{5.0F, 1.0F, "5 x 9300"}, {1.0F, 1.0F, "2 a 0"}, {1.0F, 0.0F, "2  "}}) {
        state.TotalFlow = state.ShownTotalFlow = 60;
        state.GasFactor = gasFactor;
        state.SelectedCv = cv;
        state.MaxValveCap = 50;
        modCheckValveData(sizing);
        EXPECT_EQ(numbers.general(state.SelectedCv) + " " + screen.caption(Label::lblValveBodySize) + " " +
                      screen.caption(Label::lblMaxValveCapacity),
                  outcome);
        EXPECT_FALSE(state.SizingError);
    }
    EXPECT_EQ(messages.texts, std::vector<std::string>{"Error Code 11; modCheckValveData"});
}

} // namespace

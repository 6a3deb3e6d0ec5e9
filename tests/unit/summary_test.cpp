#include "report/print_command.h"
#include "support/recording_printers.h"
#include "support/sizing.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

std::string placeOf(const SummaryRow& row)
{
    return std::to_string(row.left) + " " + std::to_string(row.top) + " " + std::to_string(row.width) + " " +
           std::to_string(row.height);
}

const std::map<Type, std::string> fonts = {
    {Type::body, "9.75 pt"}, {Type::bold, "9.75 pt bold"}, {Type::heading, "12 pt"}, {Type::small, "8.25 pt"}};

class Summary : public testing::Test
{
protected:
    /// The sizing of that name in the case file.
    static Sizing sized(const std::string& name)
    {
        for (const Case& row : readCases("sizings.csv"))
            if (row["Case"] == name)
                return Sizing(row);
        throw std::runtime_error("no case " + name);
    }
    void print(Sizing& sizing) { cmdPrint_Click(sizing.context(sizing.numbers, sizing.store), "24.12.2026", printers); }

    RecordingPrinters printers;
    Sizing depad = sized("metric flash point below");
};

TEST_F(Summary, SaysWhatTheCaseFileSays)
{
    const std::vector<Case> rows = readCases("summaries.csv");
    ASSERT_EQ(rows.size(), std::size(summaryRows));
    for (const char* const name : {"pad: displacement only", "depad: displacement in metric units", "pad: metric",
                                   "boiling point at its limit", "metric flash point below"}) {
        Sizing sizing = sized(name);
        print(sizing);
        ASSERT_TRUE(printers.printed) << name;
        for (std::size_t at = 0; at < rows.size(); ++at) {
            const SummaryForm::Shown& shown = printers.printed->rows()[at];
            EXPECT_EQ(rows[at]["Control"], summaryRows[at].name);
            EXPECT_EQ(rows[at]["Left Top Width Height"], placeOf(summaryRows[at])) << rows[at]["Control"];
            if (const Place place = summaryRows[at].place; place != Place::picture) {
                const bool right = place == Place::boxedRight || place == Place::fittedRight;
                EXPECT_EQ(rows[at]["Font"], fonts.at(summaryRows[at].type)) << rows[at]["Control"];
                EXPECT_EQ(rows[at]["Align"], right ? "right" : "left") << rows[at]["Control"];
            }
            EXPECT_EQ(shown.visible ? shown.text : "(hidden)",
                      rows[at][name] + (rows[at]["Control"] == "Label1" ? " " SIZING_VERSION : ""))
                << name << ", " << rows[at]["Control"];
        }
    }
}

TEST_F(Summary, KeepsEachFigureInItsForm)
{
    Sizing& sizing = depad;
    sizing.numbers = NumberText({",", ".", "3;0", ","});
    sizing.state.SelectedCv = 0.2F;
    sizing.state.MaxValveCap = 12098.1F;
    sizing.state.SpecGrav = 1;
    sizing.state.FlashPoint = "037,0";
    sizing.state.Notes = "two\r\nlines\tof\u0085\u00a0é\u2028.\u2029\x7F";
    sizing.state.PercentCap = 0.015F; // a half
    print(sizing);
    EXPECT_EQ(printers.printed->shown("lblPercentValveCapacity").text, "2");
    EXPECT_EQ(printers.printed->shown("lblNotes").text, "two  lines of \u00a0é .  ");
    EXPECT_EQ(printers.printed->shown("lblCV").text, "0,2");
    EXPECT_EQ(printers.printed->shown("lblMaxValveCap").text, "12098,099609375");
    EXPECT_EQ(printers.printed->shown("lblSpecGrav").text + printers.printed->shown("lblMaxFlowSG").text, "11,00");
    EXPECT_EQ(printers.printed->shown("lblFP").text, "037,0");
}

TEST_F(Summary, APageThatCannotBeFilledIsPrintedAsFarAsItIs)
{
    depad.state.PercentCap = 327.68F; // beyond 16 bits in percent
    print(depad);
    EXPECT_EQ(depad.messages.texts,
              std::vector<std::string>{"frmPrint Form_Load: An error has occurred while printing"});
    EXPECT_EQ(depad.screen.caption(Label::lblTotalFlow), "");
    EXPECT_EQ(printers.printed->shown("lblTotalFlowUnits").text, "Nm3/Hr"); // the last one filled
    EXPECT_EQ(printers.printed->shown("lblPercentValveCapacity").text, "% valve cap");
    EXPECT_EQ(printers.printed->shown("lblCustTagNo").text, "tag no");
}

TEST_F(Summary, WithoutAPrinterSaysSoAndDisablesTheButton)
{
    printers.installed = 0;
    print(depad);
    EXPECT_EQ(depad.messages.texts, std::vector<std::string>{"There is no printer installed on this computer."});
    EXPECT_FALSE(depad.screen.printEnabled);
    printers.installed = 1;
    print(depad);
    EXPECT_TRUE(depad.screen.printEnabled);
}

TEST_F(Summary, WantsAValveSizedFirst)
{
    for (const Label empty : {Label::lblTotalFlow, Label::lblPercentValveCapacity}) {
        Sizing sizing = sized("metric flash point below");
        sizing.screen.captions[empty] = "";
        print(sizing);
        EXPECT_EQ(sizing.screen.caption(Label::lblComments), "You must size a valve before printing.");
        EXPECT_TRUE(sizing.messages.texts.empty());
    }
    EXPECT_FALSE(printers.printed);

    Sizing later = sized("pad: displacement only"); // there is no advice that would take the place of the refusal
    later.screen.captions[Label::lblComments] = "You must size a valve before printing.";
    later.click(later.numbers, later.store);
    print(later);
    EXPECT_EQ(printers.printed->shown("lblComments").text, "");
}

/// From the points of the last sizing; of the flash point's box only whether it is empty counts.
TEST_F(Summary, JudgesTheStoredMaterialAfresh)
{
    using Row = std::tuple<const char*, const char*, const char*, const char*, const char*, bool, bool>;
    for (const auto& [type, units, flashBox, flashPoint, boilingPoint, before, after] :
         {Row{choice::depad, choice::us, "x", "99.9", "999", true, false},
          Row{choice::depad, choice::metric, "", "999", "149", false, true},
          Row{choice::pad, choice::us, "x", "100", "", false, false}}) {
        depad.state.ValveType = type;
        depad.state.UnitSystem = units;
        depad.state.FlashPoint = flashPoint;
        depad.state.BoilingPoint = boilingPoint;
        depad.state.HighFlashBoil = before;
        depad.screen.boxes[Box::txtFlashPoint] = flashBox;
        print(depad);
        EXPECT_EQ(depad.state.HighFlashBoil, after) << flashPoint << '/' << boilingPoint;
    }
    EXPECT_TRUE(depad.messages.texts.empty());
}

TEST_F(Summary, AnyFailureEndsInTheMessage)
{
    const std::vector<std::string> message{"cmdPrint: A printing error has occurred"};
    depad.screen.boxes[Box::txtFlashPoint] = ""; // emptied after the sizing, which had no boiling point
    print(depad);
    EXPECT_EQ(depad.messages.texts, message);
    EXPECT_FALSE(printers.printed);
    Sizing pad = sized("pad: metric");
    printers.broken = true;
    print(pad);
    EXPECT_EQ(pad.messages.texts, message);
}

} // namespace

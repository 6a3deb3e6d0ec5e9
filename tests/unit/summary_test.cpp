#include "report/print_command.h"
#include "report/printers.h"
#include "report/summary_form.h"
#include "support/sizing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace
{

/// Keeps the page that would be printed.
struct RecordingPrinters : Printers
{
    int installed = 1;
    bool broken = false;
    std::optional<SummaryForm> printed;

    int count() const override { return installed; }
    void print(const SummaryForm& page) override
    {
        if (broken)
            throw std::runtime_error("broken");
        printed = page;
    }
};

std::string placeOf(const SummaryRow& row)
{
    return std::to_string(row.left) + " " + std::to_string(row.top) + " " + std::to_string(row.width) + " " +
           std::to_string(row.height);
}

std::string fontOf(const SummaryRow& row)
{
    return row.type == Type::heading ? "12 pt"
           : row.type == Type::small ? "8.25 pt"
           : row.type == Type::bold  ? "9.75 pt bold"
                                     : "9.75 pt";
}

class Summary : public testing::Test
{
protected:
    /// The sizing of that name in the case file, with customer information.
    static Sizing sized(const std::string& name)
    {
        const std::vector<Case> rows = readCases("sizings.csv");
        Sizing sizing(*std::ranges::find(rows, name, [](const Case& row) { return row["Case"]; }));
        sizing.state.CustomerName = "a customer";
        sizing.state.CustomerLocation = "a place";
        sizing.state.CustTagNo = "a tag";
        sizing.state.Notes = "notes";
        sizing.state.Representative = "a representative";
        return sizing;
    }
    void print(Sizing& sizing)
    {
        cmdPrint_Click({sizing.state, sizing.screen, sizing.messages, sizing.numbers, printers, "24.12.2026"});
    }

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
            if (summaryRows[at].place != Place::picture) {
                EXPECT_EQ(rows[at]["Font"], fontOf(summaryRows[at])) << rows[at]["Control"];
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
    sizing.state.Notes = "two\r\nlines\tof\u0085\u00a0é";
    print(sizing);
    EXPECT_EQ(printers.printed->shown("lblNotes").text, "two  lines of \u00a0é");
    EXPECT_EQ(printers.printed->shown("lblCV").text, "0,2");
    EXPECT_EQ(printers.printed->shown("lblMaxValveCap").text, "12098,099609375");
    EXPECT_EQ(printers.printed->shown("lblSpecGrav").text + printers.printed->shown("lblMaxFlowSG").text, "11,00");
    EXPECT_EQ(printers.printed->shown("lblFP").text, "037,0");
}

TEST_F(Summary, AnUnknownCaseShowsAndHidesNothing)
{
    depad.state.SizingCase = depad.state.ValveType = "pad";
    print(depad);
    EXPECT_TRUE(std::ranges::all_of(printers.printed->rows(), &SummaryForm::Shown::visible));
    EXPECT_EQ(printers.printed->shown("lblPressurelbl").text, "Pressure:");
    EXPECT_EQ(printers.printed->shown("lblSpecGravlbl").text, "Specific Gravity:");
}

TEST_F(Summary, RoundsThePercentageToTheEvenHalf)
{
    for (const auto& [share, text] :
         {std::pair{0.125F, "12"}, {0.375F, "38"}, {0.015F, "2"}, {0.8765F, "88"}, {327.67F, "32767"}}) {
        depad.state.PercentCap = share;
        print(depad);
        EXPECT_EQ(printers.printed->shown("lblPercentValveCapacity").text, text);
    }
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
}

/// From the points of the last sizing; of the flash point's box only whether it is empty counts.
TEST_F(Summary, JudgesTheStoredMaterialAfresh)
{
    const struct
    {
        const char* valveType;
        const char* unitSystem;
        const char* sizingCase;
        const char* flashBox;
        const char* flashPoint;
        const char* boilingPoint;
        bool before;
        bool after;
    } rows[] = {
        {choice::depad, choice::us, sizing_case::depadApi2000, "x", "99.9", "999", true, false},
        {choice::depad, choice::metric, sizing_case::depadApi2000, "", "999", "149", false, true},
        {choice::pad, choice::us, sizing_case::depadApi2000, "x", "100", "", false, false},
        {choice::depad, choice::us, sizing_case::depadDirectDisplacement, "x", "0", "", true, true},
    };
    for (const auto& row : rows) {
        depad.state.ValveType = row.valveType;
        depad.state.UnitSystem = row.unitSystem;
        depad.state.SizingCase = row.sizingCase;
        depad.state.FlashPoint = row.flashPoint;
        depad.state.BoilingPoint = row.boilingPoint;
        depad.state.HighFlashBoil = row.before;
        depad.screen.boxes[Box::txtFlashPoint] = row.flashBox;
        print(depad);
        EXPECT_EQ(depad.state.HighFlashBoil, row.after) << row.unitSystem << row.flashPoint << '/' << row.boilingPoint;
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

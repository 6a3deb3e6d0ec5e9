#include "report/summary_form.h"

#include "app/sizing_state.h"
#include "base/number_text.h"
#include "platform/summary_painter.h"
#include "support/plain_screen.h"

#include <QTransform>

#include <gtest/gtest.h>

// What only these tests see. Places, fonts, pictures, and what each case shows are read from real print jobs in
// end_to_end/print_check.py.

namespace
{

class SummaryFormTest : public testing::Test
{
protected:
    SummaryForm summary() { return SummaryForm(state, numbers, "23.11.26", screen, messages); }
    std::string shown(SummaryControl label) { return summary().shown(label).text; }

    SizingState state;
    PlainScreen screen;
    RecordedMessages messages;
    NumberText numbers{{",", ".", "3;0", ","}};
};

} // namespace

TEST_F(SummaryFormTest, KeepsEachFigureInItsForm)
{
    state.SelectedCv = 0.2F;
    state.MaxValveCap = 12098.1F;
    state.SpecGrav = 1;
    state.BoilingPoint = "149,0";
    state.FlashPoint = "037";
    struct Case
    {
        SummaryControl label;
        const char* text;
    };
    for (const auto& [label, text] : {Case{"lblCV", "0,2"},
                                      {"lblMaxValveCap", "12098,099609375"},
                                      {"lblSpecGrav", "1"},
                                      {"lblTotalFlowSG", "1,00"},
                                      {"lblMaxFlowSG", "1,00"},
                                      {"lblBP", "149,0"},
                                      {"lblFP", "037"}})
        EXPECT_EQ(shown(label), text) << summaryRows[label.index].name;
}

TEST_F(SummaryFormTest, AnUnknownCaseShowsAndHidesNothing)
{
    state.SizingCase = "pad API-2000";
    state.ValveType = "pad";
    const SummaryForm form = summary();
    for (const SummaryForm::Shown& row : form.rows())
        EXPECT_TRUE(row.visible) << row.text;
    EXPECT_EQ(shown("lblPressurelbl"), "Pressure:");
    EXPECT_EQ(shown("lblSpecGravlbl"), "Specific Gravity:");
}

TEST_F(SummaryFormTest, RoundsThePercentageToTheEvenHalf)
{
    for (const auto& [share, text] :
         {std::pair{0.125F, "12"}, {0.375F, "38"}, {0.015F, "2"}, {0.8765F, "88"}, {327.67F, "32767"}}) {
        state.PercentCap = share;
        EXPECT_EQ(shown("lblPercentValveCapacity"), text);
    }
}

TEST_F(SummaryFormTest, StopsFillingAtAPercentageBeyond16Bits)
{
    state.FlowUnits = "SCFH";
    state.CustTagNo = "T-1";
    state.SizingCase = "Pad Direct Displacement";
    state.PercentCap = 327.68F;
    screen.captions[Label::lblTotalFlow] = "800";
    const SummaryForm form = summary();
    EXPECT_EQ(messages.texts, std::vector<std::string>{"frmPrint Form_Load: An error has occurred while printing"});
    EXPECT_EQ(screen.caption(Label::lblTotalFlow), "");
    EXPECT_EQ(form.shown("lblTotalFlowUnits").text, "SCFH"); // the last one filled
    EXPECT_EQ(form.shown("lblPercentValveCapacity").text, "% valve cap");
    EXPECT_EQ(form.shown("lblCustTagNo").text, "tag no");
    EXPECT_TRUE(form.shown("lblMaterial").visible);
}

TEST(PlaceSummary, CentresMovesAndShrinksAsThePrintablePartNeeds)
{
    const struct
    {
        QSizeF paper;
        QMarginsF margins;
        double left, top, scale;
    } cases[] = {
        {{12240, 15840}, {240, 240, 240, 240}, 847.5, 585, 1},      // Letter
        {{11900, 16840}, {0, 0, 0, 0}, 677.5, 1085, 1},             // A4
        {{12240, 15840}, {240, 240, 240, 800}, 847.5, 370, 1},      // a deep foot: up, not smaller
        {{12240, 15840}, {240, 837, 240, 1800}, 1374.75, 837, 0.9}, // 13203 = 0.9 of the height
        {{8400, 11900}, {0, 0, 0, 0}, 0, 107, 8400.0 / 10545},      // A5: the width decides
    };
    for (const auto& [paper, margins, left, top, scale] : cases) {
        const QTransform placed = placeSummary(paper, QRectF(QPointF(), paper).marginsRemoved(margins));
        EXPECT_NEAR(placed.m11(), scale, 1e-9);
        EXPECT_EQ(placed.m11(), placed.m22());
        EXPECT_NEAR(placed.dx(), left, 0.5);
        EXPECT_NEAR(placed.dy(), top, 0.5);
    }
}

#include "report/summary_form.h"

#include "app/sizing_state.h"
#include "platform/number_text.h"
#include "support/plain_screen.h"

#include <QApplication>
#include <QDate>
#include <QImage>
#include <QLocale>
#include <QPainter>
#include <QPalette>

#include <gtest/gtest.h>

#include <set>

namespace
{

/// A filled record in which every value is another one.
SizingState sized(const std::string& sizingCase = "Depad API-2000")
{
    SizingState state;
    state.SizingCase = sizingCase;
    state.ValveType = sizingCase.substr(0, sizingCase.find(' '));
    state.SizingMethod = sizingCase.substr(sizingCase.find(' ') + 1);
    state.UnitSystem = "Metric";
    state.ValveModel = "Series 63";
    state.PressUnits = "mbar";
    state.FlowUnits = "Nm3/Hr";
    state.VolUnits = "Cubic Meters";
    state.PumpRateUnits = "m3/Hr";
    state.CustomerName = "name";
    state.CustomerLocation = "location";
    state.CustTagNo = "tag";
    state.Notes = "notes";
    state.Representative = "representative";
    state.SpecGrav = 1;
    state.PumpRate = 2.5;
    state.InputPressure = 20;
    state.TankVolume = 12345.5;
    state.BlanketingGas = "Azote d\u00e9fini";
    state.StoredMaterial = "Diesel";
    state.BoilingPoint = "149,0";
    state.FlashPoint = "037";
    state.TotalFlow = 35.2000000327826;
    state.HighFlashBoil = true;
    state.SelectedCv = 0.2F;
    state.ValveBodySize = "1/2\"";
    state.MaxValveCap = 12098.1F;
    state.PercentCap = 0.8765F;
    state.Comments = "advice";
    return state;
}

class SummaryFormTest : public testing::Test
{
protected:
    SummaryForm summary(const SizingState& state) { return SummaryForm(state, numbers, screen, messages); }

    /// The page as a picture with one pixel for 5 twips.
    QImage painted(const SizingState& state)
    {
        QImage page(summaryWidth / 5, summaryHeight / 5, QImage::Format_RGB32);
        page.fill(Qt::white);
        QPainter painter(&page);
        painter.scale(0.2, 0.2);
        summary(state).paint(painter);
        return page;
    }

    PlainScreen screen;
    RecordedMessages messages;
    NumberText numbers{{",", ".", "3;0", ","}};
};

bool hasInk(const QImage& page, int x, int y)
{
    return qGray(page.pixel(x, y)) < 200;
}

/// The first and the last twip with ink in a strip of the page, across or down; nothing: {-1, -1}.
struct Extent
{
    int first = -1;
    int last = -1;
    int runs = 0; ///< pieces of ink that blanks of at least `gap` twips keep apart

    Extent(const QImage& page, QRect strip, bool across, int gap)
    {
        const int from = across ? strip.left() : strip.top();
        const int to = from + (across ? strip.width() : strip.height());
        for (int at = from; at < to; at += 5) {
            if (!inkAt(page, strip, across, at))
                continue;
            runs += runs == 0 || at - last > gap;
            first = first < 0 ? at : first;
            last = at;
        }
    }

    static bool inkAt(const QImage& page, QRect strip, bool across, int at)
    {
        const int from = across ? strip.top() : strip.left();
        for (int other = from; other < from + (across ? strip.height() : strip.width()); other += 5)
            if (across ? hasInk(page, at / 5, other / 5) : hasInk(page, other / 5, at / 5))
                return true;
        return false;
    }
};

} // namespace

TEST_F(SummaryFormTest, ShowsEachValueInItsLabel)
{
    const SummaryForm form = summary(sized());
    const std::pair<const char*, const char*> expected[] = {
        {"lblValveBodySize", "1/2\""},
        {"lblCV", "0,2"},
        {"lblMaxValveCap", "12098,099609375"},
        {"lblMaxValveCapUnits", "Nm3/Hr"},
        {"lblTotalFlowRate", "35,2000000327826"},
        {"lblTotalFlowUnits", "Nm3/Hr"},
        {"lblPercentValveCapacity", "88"},
        {"lblPercentUnits", "%"},
        {"lblComments", "advice"},
        {"lblValveType", "Depad"},
        {"lblSizingMethod", "API-2000"},
        {"lblSpecGravlbl", "Specific Gravity of Vented Gas:"},
        {"lblSpecGrav", "1"},
        {"lblBlanketingGaslbl", "Blanketing Gas:"},
        {"lblBlanketingGas", "Azote d\u00e9fini"},
        {"lblMaterial", "Diesel"},
        {"lblBP", "149,0"},
        {"lblFP", "037"},
        {"lblPumpRate", "2,5"},
        {"lblPressure", "20"},
        {"lblTankVolume", "12345,5"},
        {"lblValveModel", "Series 63"},
        {"lblTotalFlowSG", "1,00"},
        {"lblMaxFlowSG", "1,00"},
        {"lblBPUnits", "deg.C"},
        {"lblFPUnits", "deg.C"},
        {"lblPressureUnits", "mbar"},
        {"lblVolumeUnits", "Cubic Meters"},
        {"lblPumpRateUnits", "m3/Hr"},
        {"lblHighFlashBoil", "High Flash/Boiling Point"},
        {"lblCustomerName", "name"},
        {"lblCustomerLocation", "location"},
        {"lblCustTagNo", "tag"},
        {"lblNotes", "notes"},
        {"lblORMRep", "representative"},
    };
    for (const auto& [label, text] : expected)
        EXPECT_EQ(form.shown(label).text.toStdString(), text) << label;
    EXPECT_EQ(form.shown("lblReportDate").text, QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat));
    EXPECT_TRUE(messages.texts.empty());
}

TEST_F(SummaryFormTest, ShowsAndHidesByTheSizingCase)
{
    const std::set<std::string> material{"lblMaterial",      "lblMateriallbl", "lblBP",    "lblBPlbl",
                                         "lblBPUnits",       "lblFP",          "lblFPlbl", "lblFPUnits",
                                         "lblHighFlashBoil", "lblDash"};
    std::set<std::string> materialAndTank = material;
    materialAndTank.insert({"lblTankVolume", "lblTankVolumelbl", "lblVolumeUnits"});
    const struct
    {
        const char* sizingCase;
        std::set<std::string> hidden;
        const char* pressure;
        const char* gravity;
    } cases[] = {
        {"Pad Direct Displacement", materialAndTank, "Supply Pressure", "Specific Gravity of Blanketing Gas:"},
        {"Depad Direct Displacement", materialAndTank, "Differential Pressure", "Specific Gravity of Vented Gas:"},
        {"Pad API-2000", material, "Supply Pressure", "Specific Gravity of Blanketing Gas:"},
        {"Depad API-2000", {}, "Differential Pressure", "Specific Gravity of Vented Gas:"},
        {"pad API-2000", {}, "Pressure:", "Specific Gravity:"}, // none of the four
    };
    for (const auto& [sizingCase, hidden, pressure, gravity] : cases) {
        const SummaryForm form = summary(sized(sizingCase));
        std::set<std::string> found;
        for (const SummaryRow& row : summaryRows)
            if (!form.shown(row.name).visible)
                found.insert(row.name);
        EXPECT_EQ(found, hidden) << sizingCase;
        EXPECT_EQ(form.shown("lblPressurelbl").text.toStdString(), pressure);
        EXPECT_EQ(form.shown("lblSpecGravlbl").text.toStdString(), gravity);
    }
}

TEST_F(SummaryFormTest, RoundsThePercentageToTheEvenHalf)
{
    for (const auto& [share, text] : {std::pair{0.125F, "12"}, {0.375F, "38"}, {0.8765F, "88"}, {327.67F, "32767"}}) {
        SizingState state = sized();
        state.PercentCap = share;
        EXPECT_EQ(summary(state).shown("lblPercentValveCapacity").text.toStdString(), text);
    }
}

TEST_F(SummaryFormTest, StopsFillingAtAPercentageBeyond16Bits)
{
    SizingState state = sized("Pad Direct Displacement");
    state.PercentCap = 327.68F;
    screen.captions[Label::lblTotalFlow] = "800";
    const SummaryForm form = summary(state);
    EXPECT_EQ(messages.texts, std::vector<std::string>{"frmPrint Form_Load: An error has occurred while printing"});
    EXPECT_EQ(screen.caption(Label::lblTotalFlow), "");
    EXPECT_EQ(form.shown("lblTotalFlowUnits").text, "Nm3/Hr"); // the last one filled
    EXPECT_EQ(form.shown("lblPercentValveCapacity").text, "% valve cap");
    EXPECT_EQ(form.shown("lblCustTagNo").text, "tag no");
    EXPECT_TRUE(form.shown("lblMaterial").visible);
}

TEST_F(SummaryFormTest, CutsALongTextAtItsBox)
{
    SizingState state = sized();
    state.CustomerName = std::string(60, 'M');
    state.Notes = "gypsy"; // its descenders reach below the box
    const QImage page = painted(state);
    const Extent name(page, QRect(5900, 2880, summaryWidth - 5900, 195), true, 60);
    EXPECT_NEAR(name.first, 6000, 20);
    EXPECT_LE(name.last, 6000 + 2640);
    EXPECT_GE(name.last, 6000 + 2640 - 200); // a whole letter less at most
    EXPECT_NEAR(Extent(page, QRect(5900, 4560, 1000, 240), false, 60).last, 4560 + 174 + 42, 10);
}

TEST_F(SummaryFormTest, WrapsTheAdviceInsideItsBox)
{
    const std::string longest = "Consider reducing valve size or decreasing differential pressure to increase valve "
                                "utilization for better control. ";
    SizingState state = sized();
    for (const auto& [text, lines] : {std::pair{longest, 2}, {longest + longest + longest, 3}}) {
        state.Comments = text;
        const QImage page = painted(state);
        EXPECT_LE(Extent(page, QRect(3300, 8280, summaryWidth - 3300, 800), true, 0).last, 3360 + 4455);
        const Extent down(page, QRect(3300, 8200, 5000, 1500), false, 10);
        EXPECT_EQ(down.runs, lines);
        EXPECT_GE(down.first, 8280);
        EXPECT_LE(down.last, 8280 + 615);
    }
}

TEST_F(SummaryFormTest, MovesLabelsOnBehindALongValue)
{
    SizingState state = sized();
    const QRect row(6100, 7440, summaryWidth - 6100, 200);
    state.TotalFlow = 800;
    const Extent stated(painted(state), row, true, 35);
    state.TotalFlow = 2222.22222222222;
    const Extent moved(painted(state), row, true, 35);
    EXPECT_EQ(stated.runs, 5); // the flow, its unit, the gravity, "S.G.", "Gas"
    EXPECT_EQ(moved.runs, 5);
    state.TotalFlow = 2e300; // nothing leaves the page or covers a neighbour
    state.SpecGrav = 2e20;
    EXPECT_LE(Extent(painted(state), row, true, 35).last, summaryWidth);
}

TEST_F(SummaryFormTest, IsBlackOnWhiteUnderADarkTheme)
{
    const QPalette usual = QApplication::palette();
    const QImage page = painted(sized());
    QApplication::setPalette(QPalette(Qt::white, Qt::black, Qt::gray, Qt::darkGray, Qt::gray, Qt::white, Qt::black));
    const QImage underDark = painted(sized());
    QApplication::setPalette(usual);
    EXPECT_EQ(page, underDark);
    EXPECT_EQ(page.pixelColor(5, 400), QColor(Qt::white));
    EXPECT_GT(Extent(page, QRect(6000, 3840, 900, 225), true, 60).last, 6000);
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

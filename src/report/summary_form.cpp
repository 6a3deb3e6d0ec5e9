#include "report/summary_form.h"

#include "app/sizing_state.h"
#include "engine/checked_math.h"
#include "engine/main_screen.h"
#include "engine/sizing_driver.h"
#include "platform/message_box.h"
#include "platform/number_text.h"

#include <QDate>
#include <QFont>
#include <QImage>
#include <QLocale>
#include <QPageLayout>
#include <QPainter>
#include <QPrinter>
#include <QTextLayout>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace
{

// Between two labels of a line, in twips: below a thin space they would read as one, and the second one moves on.
constexpr int thinSpace = 40;
constexpr int movedGap = 100;

struct Filling
{
    const char* label;
    std::string (*text)(const SizingState& state, const NumberText& numbers);
};

std::string shortDateToday()
{
    return QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat).toStdString();
}

std::string gravityCaption(const SizingState& state)
{
    if (state.ValveType == "Pad")
        return "Specific Gravity of Blanketing Gas:";
    if (state.ValveType == "Depad")
        return "Specific Gravity of Vented Gas:";
    return "Specific Gravity:";
}

std::string percentText(const SizingState& state)
{
    return std::to_string(toWhole<std::int16_t>(static_cast<double>(percentOfCapacity(state))));
}

std::string degrees(const SizingState& state)
{
    return state.UnitSystem == "US" ? "deg.F" : "deg.C";
}

using State = const SizingState&;
using Numbers = const NumberText&;

/// In the order of filling: where one fails, the labels after it keep their design texts.
constexpr Filling fillings[] = {
    {"lblReportDate", [](State, Numbers) { return shortDateToday(); }},
    {"lblSpecGravlbl", [](State state, Numbers) { return gravityCaption(state); }},
    {"lblValveBodySize", [](State state, Numbers) { return state.ValveBodySize; }},
    {"lblCV", [](State state, Numbers numbers) { return numbers.general(state.SelectedCv); }},
    // Widened: the capacity shows the digits of its single-precision value, as on the main form.
    {"lblMaxValveCap",
     [](State state, Numbers numbers) { return numbers.general(static_cast<double>(state.MaxValveCap)); }},
    {"lblMaxValveCapUnits", [](State state, Numbers) { return state.FlowUnits; }},
    {"lblTotalFlowRate", [](State state, Numbers numbers) { return numbers.general(state.TotalFlow); }},
    {"lblTotalFlowUnits", [](State state, Numbers) { return state.FlowUnits; }},
    {"lblPercentValveCapacity", [](State state, Numbers) { return percentText(state); }},
    {"lblPercentUnits", [](State, Numbers) { return std::string("%"); }},
    {"lblComments", [](State state, Numbers) { return state.Comments; }},
    {"lblValveType", [](State state, Numbers) { return state.ValveType; }},
    {"lblSizingMethod", [](State state, Numbers) { return state.SizingMethod; }},
    {"lblSpecGrav", [](State state, Numbers numbers) { return numbers.general(state.SpecGrav); }},
    {"lblBlanketingGas", [](State state, Numbers) { return state.BlanketingGas; }},
    {"lblMaterial", [](State state, Numbers) { return state.StoredMaterial; }},
    {"lblBP", [](State state, Numbers) { return state.BoilingPoint; }},
    {"lblFP", [](State state, Numbers) { return state.FlashPoint; }},
    {"lblPumpRate", [](State state, Numbers numbers) { return numbers.general(state.PumpRate); }},
    {"lblPressure", [](State state, Numbers numbers) { return numbers.general(state.InputPressure); }},
    {"lblTankVolume", [](State state, Numbers numbers) { return numbers.general(state.TankVolume); }},
    {"lblValveModel", [](State state, Numbers) { return state.ValveModel; }},
    {"lblTotalFlowSG", [](State state, Numbers numbers) { return numbers.standard(state.SpecGrav); }},
    {"lblMaxFlowSG", [](State state, Numbers numbers) { return numbers.standard(state.SpecGrav); }},
    {"lblBPUnits", [](State state, Numbers) { return degrees(state); }},
    {"lblFPUnits", [](State state, Numbers) { return degrees(state); }},
    {"lblPressureUnits", [](State state, Numbers) { return state.PressUnits; }},
    {"lblVolumeUnits", [](State state, Numbers) { return state.VolUnits; }},
    {"lblPumpRateUnits", [](State state, Numbers) { return state.PumpRateUnits; }},
    {"lblHighFlashBoil",
     [](State state, Numbers) {
         return std::string(state.HighFlashBoil ? "High Flash/Boiling Point" : "Low Flash/Boiling Point");
     }},
    {"lblCustomerName", [](State state, Numbers) { return state.CustomerName; }},
    {"lblCustomerLocation", [](State state, Numbers) { return state.CustomerLocation; }},
    {"lblCustTagNo", [](State state, Numbers) { return state.CustTagNo; }},
    {"lblNotes", [](State state, Numbers) { return state.Notes; }},
    {"lblORMRep", [](State state, Numbers) { return state.Representative; }},
};

struct CaseRule
{
    const char* sizingCase;
    bool api2000;
    bool depadApi2000;
    const char* pressureCaption;
};

constexpr CaseRule caseRules[] = {
    {"Pad Direct Displacement", false, false, "Supply Pressure"},
    {"Depad Direct Displacement", false, false, "Differential Pressure"},
    {"Pad API-2000", true, false, "Supply Pressure"},
    {"Depad API-2000", true, true, "Differential Pressure"},
};

bool isShown(ShownIn shownIn, const CaseRule& rule)
{
    switch (shownIn) {
        case ShownIn::api2000:
            return rule.api2000;
        case ShownIn::depadApi2000:
            return rule.depadApi2000;
        default:
            return true;
    }
}

std::size_t rowIndex(std::string_view name)
{
    const auto found = std::find_if(std::begin(summaryRows), std::end(summaryRows),
                                    [&](const SummaryRow& row) { return row.name == name; });
    if (found == std::end(summaryRows))
        throw std::out_of_range("no such control on the summary: " + std::string(name));
    return static_cast<std::size_t>(found - std::begin(summaryRows));
}

/// In twips, which are the painter's unit: the size on paper is the same at every resolution.
QFont summaryFont(Type type)
{
    QFont font;
    font.setFamilies({QStringLiteral("Times New Roman"), QStringLiteral("Liberation Serif")});
    font.setStyleHint(QFont::Serif);
    font.setPixelSize(type == Type::heading ? 12 * 20 : type == Type::small ? 165 : 195); // 12, 8.25 and 9.75 pt
    font.setBold(type == Type::bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

bool endsAtRight(Place place)
{
    return place == Place::boxedRight || place == Place::fittedRight;
}

/// As an entry box shows it: line ends and tabs that were pasted into one are blanks.
QString onOneLine(QString text)
{
    for (QChar& c : text)
        if (c.category() == QChar::Other_Control)
            c = u' ';
    return text;
}

/// The text of one label, broken into lines no wider than `width`; a single-line label has its first line only.
class LabelText
{
public:
    LabelText(const SummaryRow& row, const QString& text, double width)
        : layout_(onOneLine(text), summaryFont(row.type))
    {
        const bool wraps = row.place == Place::wrapped;
        QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
        option.setTextDirection(Qt::LeftToRight);
        option.setUseDesignMetrics(true);
        option.setWrapMode(wraps ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::WrapAnywhere);
        layout_.setTextOption(option);
        layout_.beginLayout();
        double bottom = 0;
        for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
            line.setLineWidth(width);
            line.setPosition(QPointF(0, bottom));
            bottom += line.height();
            // The first line may reach below its box by its descenders.
            if (lines_.empty() || (wraps && bottom <= row.height))
                lines_.push_back(line);
        }
        layout_.endLayout();
    }

    double width() const { return lines_.empty() ? 0 : lines_.front().naturalTextWidth(); }

    void draw(QPainter& painter, QPointF at) const
    {
        for (const QTextLine& line : lines_)
            line.draw(&painter, at);
    }

private:
    QTextLayout layout_;
    std::vector<QTextLine> lines_; ///< those that are shown
};

/// Paints one control and returns how far its line is taken then; `taken` is how far it was.
double paintControl(QPainter& painter, const SummaryRow& row, const QString& text, double taken)
{
    if (row.place == Place::picture) {
        painter.drawImage(QRectF(row.left, row.top, row.width, row.height), QImage(text));
        return taken;
    }
    if (endsAtRight(row.place)) {
        const double right = row.left + row.width;
        const LabelText label(row, text, right);
        label.draw(painter, QPointF(right - label.width(), row.top));
        return taken;
    }
    // A value that grows into the next label pushes it on; what finds no room is cut at the form's edge.
    const double left = row.left < taken + thinSpace ? taken + movedGap : row.left;
    const double room = row.place == Place::fitted ? summaryWidth - left : row.width;
    if (room <= 0)
        return taken;
    const LabelText label(row, text, room);
    label.draw(painter, QPointF(left, row.top));
    return left + label.width();
}

} // namespace

QTransform placeSummary(const QSizeF& paper, const QRectF& printable)
{
    const double scale = std::min({1.0, printable.width() / summaryWidth, printable.height() / summaryHeight});
    const auto start = [scale](double whole, double from, double to, int length) {
        return std::clamp((whole - scale * length) / 2, from, std::max(from, to - scale * length));
    };
    return QTransform(scale, 0, 0, scale, start(paper.width(), printable.left(), printable.right(), summaryWidth),
                      start(paper.height(), printable.top(), printable.bottom(), summaryHeight));
}

SummaryForm::SummaryForm(const SizingState& state, const NumberText& numbers, MainScreen& screen,
                         MessageBox& messageBox)
{
    for (std::size_t row = 0; row < shown_.size(); ++row)
        shown_[row].text = QString::fromUtf8(summaryRows[row].text);
    try {
        fill(state, numbers);
    } catch (const std::exception&) {
        messageBox.show("frmPrint Form_Load: An error has occurred while printing");
        screen.modClearData();
    }
}

QString SummaryForm::caption()
{
    return QStringLiteral("ORM - Valve Sizing Summary");
}

void SummaryForm::fill(const SizingState& state, const NumberText& numbers)
{
    for (const Filling& filling : fillings)
        at(filling.label).text = QString::fromStdString(filling.text(state, numbers));
    showCase(state);
    at("lblComments").visible = true;
}

void SummaryForm::showCase(const SizingState& state)
{
    const auto rule = std::find_if(std::begin(caseRules), std::end(caseRules),
                                   [&](const CaseRule& candidate) { return state.SizingCase == candidate.sizingCase; });
    if (rule == std::end(caseRules))
        return;
    for (std::size_t row = 0; row < shown_.size(); ++row)
        shown_[row].visible = isShown(summaryRows[row].shownIn, *rule);
    at("lblPressurelbl").text = QString::fromUtf8(rule->pressureCaption);
}

const SummaryForm::Shown& SummaryForm::shown(std::string_view name) const
{
    return shown_[rowIndex(name)];
}

SummaryForm::Shown& SummaryForm::at(std::string_view name)
{
    return shown_[rowIndex(name)];
}

void SummaryForm::paint(QPrinter& printer) const
{
    printer.setFullPage(true);
    printer.setPageOrientation(QPageLayout::Portrait);
    printer.setColorMode(QPrinter::Color); // a printer without colours makes its own greys of the pictures
    QPainter painter;
    if (!painter.begin(&printer))
        throw std::runtime_error("the printer cannot be painted on");
    const double dots = printer.resolution() / 1440.0; // a twip
    const QSizeF paper(printer.width() / dots, printer.height() / dots);
    QPageLayout layout = printer.pageLayout();
    layout.setUnits(QPageLayout::Point);
    const QMarginsF margins = layout.minimumMargins() * 20;
    painter.scale(dots, dots);
    painter.setTransform(placeSummary(paper, QRectF(QPointF(), paper).marginsRemoved(margins)), true);
    paint(painter);
    if (!painter.end())
        throw std::runtime_error("the page was not printed");
}

void SummaryForm::paint(QPainter& painter) const
{
    painter.setPen(Qt::black);
    double taken = 0; // right end of the label before it on the same line
    for (std::size_t at = 0; at < shown_.size(); ++at) {
        if (at > 0 && summaryRows[at].top != summaryRows[at - 1].top)
            taken = 0;
        if (shown_[at].visible && !shown_[at].text.isEmpty())
            taken = paintControl(painter, summaryRows[at], shown_[at].text, taken);
    }
}

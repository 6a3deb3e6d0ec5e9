#include "report/summary_form.h"

#include "app/sizing_state.h"
#include "base/checked_math.h"
#include "base/customer_fields.h"
#include "base/main_screen.h"
#include "base/message_box.h"
#include "base/number_text.h"
#include "base/setup_choices.h"
#include "base/text.h"
#include "engine/sizing_driver.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>

namespace
{

struct Filling
{
    SummaryControl label;
    std::string (*text)(const SizingState& state, const NumberText& numbers);
};

std::string gravityCaption(const SizingState& state)
{
    if (state.ValveType == choice::pad)
        return "Specific Gravity of Blanketing Gas:";
    if (state.ValveType == choice::depad)
        return "Specific Gravity of Vented Gas:";
    return "Specific Gravity:";
}

std::string percentText(const SizingState& state)
{
    return std::to_string(toWhole<std::int16_t>(static_cast<double>(percentOfCapacity(state))));
}

std::string degrees(const SizingState& state)
{
    const UnitSystem* const units = unitsOf(state.UnitSystem);
    return units == nullptr ? std::string() : std::string("deg.") + units->degrees;
}

/// As an entry box shows it: line ends, tabs and other control characters that were pasted into one are blanks.
std::string onOneLine(std::string text)
{
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (const std::size_t length = controlLength(std::string_view(text).substr(at)))
            text.replace(at, length, " ");
        else if (text.compare(at, 3, "\u2028") == 0 || text.compare(at, 3, "\u2029") == 0)
            text.replace(at, 3, " "); // line and paragraph separator
    }
    return text;
}

using State = const SizingState&;
using Numbers = const NumberText&;

/// In the order of filling: where one fails, the labels after it keep their design texts.
constexpr Filling fillings[] = {
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
};

constexpr auto customerLabels = rowsNamed<SummaryControl, customerFields, &CustomerField::summary>();

struct PressureCaption
{
    const char* sizingCase;
    const char* text;
};

constexpr PressureCaption pressureCaptions[] = {
    {sizing_case::padDirectDisplacement, "Supply Pressure"},
    {sizing_case::depadDirectDisplacement, "Differential Pressure"},
    {sizing_case::padApi2000, "Supply Pressure"},
    {sizing_case::depadApi2000, "Differential Pressure"},
};

} // namespace

SummaryForm::SummaryForm(const SizingState& state, const NumberText& numbers, const std::string& today,
                         MainScreen& screen, MessageBox& messageBox)
{
    for (std::size_t row = 0; row < shown_.size(); ++row)
        shown_[row].text = summaryRows[row].text;
    try {
        fill(state, numbers, today);
    } catch (const std::exception&) {
        messageBox.show("frmPrint Form_Load: An error has occurred while printing");
        screen.modClearData();
    }
}

void SummaryForm::fill(const SizingState& state, const NumberText& numbers, const std::string& today)
{
    at("lblReportDate").text = today;
    for (const Filling& filling : fillings)
        at(filling.label).text = onOneLine(filling.text(state, numbers));
    for (std::size_t field = 0; field < customerLabels.size(); ++field)
        at(customerLabels[field]).text = onOneLine(state.*customerFields[field].text);
    showCase(state);
    at("lblComments").visible = true;
}

void SummaryForm::showCase(const SizingState& state)
{
    const auto pressure = std::ranges::find(pressureCaptions, state.SizingCase, &PressureCaption::sizingCase);
    if (pressure == std::end(pressureCaptions))
        return;
    for (std::size_t row = 0; row < shown_.size(); ++row)
        if (const std::optional<Box> box = summaryRows[row].shownWith)
            shown_[row].visible = asksFor(state.SizingCase, *box);
    at("lblPressurelbl").text = pressure->text;
}

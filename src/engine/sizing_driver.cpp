#include "engine/sizing_driver.h"

#include "app/sizing_state.h"
#include "base/checked_math.h"
#include "base/main_screen.h"
#include "base/number_text.h"
#include "base/read_number.h"
#include "base/setup_choices.h"
#include "base/sizing_context.h"
#include "capacity/capacity_store.h"
#include "capacity/valve_check.h"
#include "capacity/valve_results.h"
#include "capacity/valve_selection.h"
#include "engine/input_checks.h"
#include "engine/pressure_range.h"
#include "engine/required_flow.h"

namespace
{

/// Writes the advice on the valve's utilisation. Tested in this order; a later text replaces an earlier one, and one
/// that valve selection or its check left.
void advise(SizingContext& sizing)
{
    const SizingState& state = sizing.state;
    const bool pad = state.ValveType == choice::pad;
    const bool depad = state.ValveType == choice::depad;
    const auto comment = [&](const char* text) { sizing.screen.setCaption(Label::lblComments, text); };
    const float used = state.PercentCap;

    if (pad && used < 0.2F)
        comment("Consider reducing supply pressure to increase valve utilization for better control.");
    if (depad && used < 0.5F)
        comment("Consider reducing valve size or decreasing differential pressure to increase valve utilization for "
                "better control.");
    // No advice to lower a pressure that is at its lowest.
    for (const Model& model : models)
        if (state.ValveModel == model.name && state.InputPressure <= model.lowestPressure &&
            used < (depad ? model.depadShare : 0.2F))
            comment("");
    if (pad && used > 0.7F)
        comment("If utilized valve capacity is greater than 70%, consider using the next larger valve capacity (Cv).");
    if (depad && used > 0.8F)
        comment("If utilized valve capacity is greater than 80%, consider using the next larger valve capacity (Cv).");
}

/// Shows the chosen valve, the share of its capacity that the duty takes, and the advice.
void showUtilisation(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    MainScreen& screen = sizing.screen;
    state.PercentCap = toSingle(divide(state.TotalFlow, static_cast<double>(state.MaxValveCap)));
    showSelectedCv(sizing);
    advise(sizing);
    if (state.PercentCap >= 1) {
        screen.setCaption(Label::lblComments,
                          "You have reached or exceeded the maximum valve capacity for the given Inlet Pressure.");
        screen.empty(valveLabels);
        screen.setCaption(Label::lblPercentValveCapacity, "");
        return;
    }
    const auto percent = toWhole(static_cast<double>(percentOfCapacity(state)));
    screen.setCaption(Label::lblPercentValveCapacity,
                      state.PercentCap < 0.01F ? "Less than 1%" : std::to_string(percent));
    screen.setCaption(Label::lblSGGas2, sizing.numbers.standard(state.SpecGrav));
    state.Comments = screen.caption(Label::lblComments);
}

void size(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    modCalcFlowRate(sizing);
    if (state.SizingError)
        return;
    modMaxMinCheck(sizing);
    if (state.SizingError)
        return;
    state.ShownTotalFlow = toWhole(readNumber(sizing.numbers, sizing.screen.caption(Label::lblTotalFlow)));
    modGetValveData(sizing);
    if (state.SizingError)
        return;
    modCheckValveData(sizing);
    if (!sizing.store.whyUnreadable().empty()) { // what was found before the file failed is no valve
        modClearSizingData(sizing);
        refuseForCapacity(sizing);
        return;
    }
    showUtilisation(sizing);
}

} // namespace

float percentOfCapacity(const SizingState& state)
{
    return state.PercentCap * 100.0F;
}

void modSizeValve(SizingContext& sizing)
{
    // A colon where the other routines have a semicolon.
    withHandler(
        sizing.messageBox, {"Error Code 11: modSizeValve", "Error Code 13: modSizeValve"}, [&] { size(sizing); },
        [&] { sizing.state.SizingError = true; });
}

void cmdCalcFlowRate_Click(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    sizing.store.beginClick();
    state.SizingCase = sizingCaseOf(state);
    modErrorCheck(sizing);
    if (state.InputError) {
        state.InputError = false;
        return;
    }
    modSizeValve(sizing);
    state.SizingError = false;
}

#include "capacity/valve_selection.h"

#include "app/sizing_state.h"
#include "capacity/model_rules.h"
#include "capacity/table_lookups.h"
#include "engine/checked_math.h"
#include "engine/display_rounding.h"
#include "engine/main_screen.h"
#include "engine/sizing_context.h"
#include "platform/number_text.h"

namespace
{

void refuse(SizingContext& sizing, const char* message)
{
    sizing.screen.setCaption(Label::lblComments, message);
    sizing.state.SizingError = true;
}

void showCv(SizingContext& sizing)
{
    const double shown = Round1Place(sizing, static_cast<double>(sizing.state.SelectedCv));
    sizing.screen.setCaption(Label::lblCV, sizing.numbers.general(shown));
}

void selectPad(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    const double pressure = state.InputPressure;
    const std::int32_t flow = tableFlow(sizing, state.ShownTotalFlow);

    state.SelectedCv = toSingle(modLookupCVPad(sizing, pressure, flow));
    if (state.SelectedCv == 0) {
        refuse(sizing, "You have exceeded the maximum available valve capacity for the given supply pressure.");
        return;
    }
    if (state.SelectedCv == 0.2F || state.SelectedCv == 0.4F)
        modStoreCV(sizing);
    showCv(sizing);
    state.ValveBodySize = modLookupSizePad(sizing, pressure, flow);
    sizing.screen.setCaption(Label::lblValveBodySize, state.ValveBodySize);

    if (const char* const message = brokenModelRule(sizing)) {
        modClearSizingData(sizing);
        refuse(sizing, message);
        return;
    }
    // The table capacity is rounded before it is multiplied; depad sizing and the valve check round the product.
    const auto capacity = toWhole(modLookupSCFHPad(sizing, pressure, flow));
    state.MaxValveCap = toSingle(static_cast<double>(state.GasFactor) * capacity);
    showMaxValveCap(sizing);
}

void selectDepad(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    const double pressure = state.InputPressure;
    const std::int32_t flow = tableFlow(sizing, state.ShownTotalFlow);

    state.SelectedCv = toSingle(modLookupCVDepad(sizing, pressure, flow));
    showCv(sizing); // before the test: no valve shows as 0
    if (state.SelectedCv == 0) {
        refuse(sizing, "You have exceeded the maximum available valve capacity for the given differential pressure.");
        return;
    }
    state.ValveBodySize = modLookupSizeDepad(sizing, pressure, flow);
    sizing.screen.setCaption(Label::lblValveBodySize, state.ValveBodySize);
    const double capacity = modLookupSCFHDepad(sizing, pressure, flow);
    state.MaxValveCap = toSingle(toWhole(capacity * static_cast<double>(state.GasFactor)));
    showMaxValveCap(sizing);
}

} // namespace

std::int32_t tableFlow(const SizingContext& sizing, double flow)
{
    return toWhole(divide(flow, static_cast<double>(sizing.state.GasFactor)));
}

void showMaxValveCap(SizingContext& sizing)
{
    sizing.screen.setCaption(Label::lblMaxValveCapacity,
                             sizing.numbers.general(static_cast<double>(sizing.state.MaxValveCap)));
}

void modGetValveData(SizingContext& sizing)
{
    const std::string& sizingCase = sizing.state.SizingCase;
    withHandler(
        sizing.messageBox, errorCodes("modGetValveData"),
        [&] {
            if (sizingCase == "Pad API-2000" || sizingCase == "Pad Direct Displacement")
                selectPad(sizing);
            else if (sizingCase == "Depad API-2000" || sizingCase == "Depad Direct Displacement")
                selectDepad(sizing);
        },
        [&] {
            sizing.state.SizingError = true;
            sizing.screen.modClearData();
        });
}

void modClearSizingData(SizingContext& sizing)
{
    for (const Label label : {Label::lblCV, Label::lblMaxValveCapacity, Label::lblValveBodySize,
                              Label::lblPercentValveCapacity, Label::lblSGGas2})
        sizing.screen.setCaption(label, "");
}

#include "capacity/valve_selection.h"

#include "app/sizing_state.h"
#include "base/checked_math.h"
#include "base/main_screen.h"
#include "base/offered.h"
#include "base/sizing_context.h"
#include "capacity/table_lookups.h"
#include "capacity/valve_results.h"

#include <array>

namespace
{

bool isPad(const SizingState& state)
{
    return state.SizingCase == sizing_case::padApi2000 || state.SizingCase == sizing_case::padDirectDisplacement;
}

void refuse(SizingContext& sizing, const char* message)
{
    sizing.screen.setCaption(Label::lblComments, message);
    sizing.state.SizingError = true;
}

void selectPad(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    const double pressure = state.InputPressure;
    const std::int32_t flow = tableFlow(sizing, state.ShownTotalFlow);

    state.SelectedCv = toSingle(modLookupCVPad(sizing, pressure, flow));
    if (state.SelectedCv == 0) {
        refuseForCapacity(sizing);
        return;
    }
    if (usesCvText(state.SelectedCv))
        modStoreCV(sizing);
    showSelectedCv(sizing);
    setValveBodySize(sizing, modLookupSizePad(sizing, pressure, flow));

    if (const char* const message = brokenModelRule(sizing)) {
        modClearSizingData(sizing);
        refuse(sizing, message);
        sizing.screen.refusedAt(Box::txtPressure);
        return;
    }
    // The table capacity is rounded before it is multiplied; depad sizing and the valve check round the product.
    const auto capacity = toWhole(modLookupSCFHPad(sizing, pressure, flow));
    setMaxValveCap(sizing, toSingle(static_cast<double>(state.GasFactor) * capacity));
}

void selectDepad(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    const double pressure = state.InputPressure;
    const std::int32_t flow = tableFlow(sizing, state.ShownTotalFlow);

    state.SelectedCv = toSingle(modLookupCVDepad(sizing, pressure, flow));
    showSelectedCv(sizing); // before the test: no valve shows as 0
    if (state.SelectedCv == 0) {
        refuseForCapacity(sizing);
        return;
    }
    setValveBodySize(sizing, modLookupSizeDepad(sizing, pressure, flow));
    setMaxValveCap(sizing, roundedGasCapacity(sizing, modLookupSCFHDepad(sizing, pressure, flow)));
}

} // namespace

void refuseForCapacity(SizingContext& sizing)
{
    refuse(sizing, isPad(sizing.state)
                       ? "You have exceeded the maximum available valve capacity for the given supply pressure."
                       : "You have exceeded the maximum available valve capacity for the given differential pressure.");
}

void modGetValveData(SizingContext& sizing)
{
    const std::string& sizingCase = sizing.state.SizingCase;
    withHandler(
        sizing.messageBox, errorCodes("modGetValveData"),
        [&] {
            if (isPad(sizing.state))
                selectPad(sizing);
            else if (sizingCase == sizing_case::depadApi2000 || sizingCase == sizing_case::depadDirectDisplacement)
                selectDepad(sizing);
        },
        [&] {
            sizing.state.SizingError = true;
            sizing.screen.modClearData();
        });
}

void modClearSizingData(SizingContext& sizing)
{
    sizing.screen.empty(valveLabels);
    sizing.screen.empty(std::array{Label::lblPercentValveCapacity, Label::lblSGGas2});
}

#include "capacity/valve_check.h"

#include "app/sizing_state.h"
#include "base/checked_math.h"
#include "base/main_screen.h"
#include "base/offered.h"
#include "base/sizing_context.h"
#include "capacity/cv_series.h"
#include "capacity/table_lookups.h"
#include "capacity/valve_results.h"

#include <algorithm>
#include <span>

namespace
{

/// Steps `SelectedCv` to the next value of the series; a value outside it stays. At the last value the valve results
/// become empty, `message` is shown and the answer is false.
bool stepUp(SizingContext& sizing, std::span<const float> series, const char* message)
{
    float& cv = sizing.state.SelectedCv;
    if (cv == series.back()) {
        sizing.screen.empty(valveLabels);
        sizing.screen.setCaption(Label::lblComments, message);
        return false;
    }
    if (const auto found = std::find(series.begin(), series.end(), cv); found != series.end())
        cv = found[1];
    return true;
}

/// Looks capacity and body size of the stepped Cv up again.
void lookUpAgain(SizingContext& sizing, decltype(modLookupSCFHPad)& lookupCapacity,
                 decltype(modLookupSizePad)& lookupSize)
{
    const SizingState& state = sizing.state;
    const std::int32_t flow = tableFlow(sizing, state.ShownTotalFlow);
    setMaxValveCap(sizing, roundedGasCapacity(sizing, lookupCapacity(sizing, state.InputPressure, flow)));
    const std::int32_t sizeFlow = tableFlow(sizing, static_cast<double>(state.MaxValveCap));
    setValveBodySize(sizing, lookupSize(sizing, state.InputPressure, sizeFlow));
}

void checkPad(SizingContext& sizing)
{
    const SizingState& state = sizing.state;
    if (!stepUp(sizing, padCvSeries,
                "You have exceeded the maximum available valve capacity for the given inlet pressure."))
        return;
    if (usesCvText(state.SelectedCv))
        modStoreCV(sizing);
    if (const char* const message = brokenModelRule(sizing)) {
        sizing.screen.setCaption(Label::lblComments, message);
        return;
    }
    lookUpAgain(sizing, modLookupSCFHPad, modLookupSizePad);
}

void checkDepad(SizingContext& sizing)
{
    if (stepUp(sizing, depadCvSeries,
               "You have exceeded the maximum available valve capacity for the given differential pressure."))
        lookUpAgain(sizing, modLookupSCFHDepad, modLookupSizeDepad);
}

} // namespace

void modCheckValveData(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    withHandler(
        sizing.messageBox, errorCodes("modCheckValveData"),
        [&] {
            if (toSingle(state.TotalFlow) < state.MaxValveCap)
                return;
            if (state.ValveType == choice::pad)
                checkPad(sizing);
            else if (state.ValveType == choice::depad)
                checkDepad(sizing);
        },
        [&] { sizing.screen.modClearData(); });
}

#include "engine/pressure_range.h"

#include "app/sizing_state.h"
#include "base/failure.h"
#include "base/main_screen.h"
#include "base/sizing_context.h"

namespace
{

bool applies(const PressureRange& range, const SizingState& state)
{
    return state.ValveModel == range.valveModel && (range.valveType == nullptr || state.ValveType == range.valveType) &&
           state.PressUnits == range.pressUnits;
}

} // namespace

void modMaxMinCheck(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    for (const PressureRange& range : pressureRanges) {
        if (!applies(range, state))
            continue;
        if (state.InputPressure < range.lowest || state.InputPressure > range.highest) {
            sizing.screen.setCaption(Label::lblComments, range.message);
            state.SizingError = true;
        }
        return;
    }
}

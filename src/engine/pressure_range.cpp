#include "engine/pressure_range.h"

#include "app/sizing_state.h"
#include "base/failure.h"
#include "base/main_screen.h"
#include "base/offered.h"
#include "base/sizing_context.h"

const Offer* offerOf(const SizingState& state)
{
    const bool typeCounts = isOffered(state.ValveModel, choice::depad);
    return findOffer(state.ValveModel, typeCounts ? state.ValveType : choice::pad, state.PressUnits);
}

void modMaxMinCheck(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    const auto check = [&] {
        const Offer* const offer = offerOf(state);
        if (offer == nullptr || (state.InputPressure >= offer->lowest && state.InputPressure <= offer->highest))
            return;
        sizing.screen.setCaption(Label::lblComments, offer->message);
        sizing.screen.refusedAt(Box::txtPressure);
        state.SizingError = true;
    };
    withHandler(sizing.messageBox, errorCodes("modMaxMinCheck"), check, [&] {
        state.SizingError = true;
        sizing.screen.modClearData();
    });
}

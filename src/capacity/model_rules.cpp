#include "capacity/model_rules.h"

#include "app/sizing_state.h"
#include "base/main_screen.h"
#include "base/offered.h"
#include "base/read_number.h"
#include "base/sizing_context.h"

const char* brokenModelRule(const SizingContext& sizing)
{
    const SizingState& state = sizing.state;
    const double pressure = readNumber(sizing.numbers, sizing.screen.text(Box::txtPressure));
    const Offer* const offer = findOffer(state.ValveModel, choice::pad, state.PressUnits);
    const bool isBroken =
        offer != nullptr && pressure < offer->minimum.lowest && state.SelectedCv > offer->minimum.exemptUpToCv;
    return isBroken ? offer->minimum.message : nullptr;
}

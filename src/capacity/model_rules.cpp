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
    for (const Offer& offer : offers) {
        const MinimumPressure& minimum = offer.minimum;
        if (state.ValveModel == offer.valveModel && state.PressUnits == offer.pressUnits &&
            minimum.message != nullptr && pressure < minimum.lowest && state.SelectedCv > minimum.exemptUpToCv)
            return minimum.message;
    }
    return nullptr;
}

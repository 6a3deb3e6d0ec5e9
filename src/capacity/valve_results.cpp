#include "capacity/valve_results.h"

#include "app/sizing_state.h"
#include "base/checked_math.h"
#include "base/display_rounding.h"
#include "base/main_screen.h"
#include "base/number_text.h"
#include "base/offered.h"
#include "base/read_number.h"
#include "base/sizing_context.h"

std::int32_t tableFlow(const SizingContext& sizing, double flow)
{
    return toWhole(divide(flow, static_cast<double>(sizing.state.GasFactor)));
}

void showSelectedCv(SizingContext& sizing)
{
    const double rounded = Round1Place(sizing, static_cast<double>(sizing.state.SelectedCv));
    sizing.screen.setCaption(Label::lblCV, sizing.numbers.general(rounded));
}

void setValveBodySize(SizingContext& sizing, const std::string& bodySize)
{
    sizing.state.ValveBodySize = bodySize;
    sizing.screen.setCaption(Label::lblValveBodySize, bodySize);
}

void setMaxValveCap(SizingContext& sizing, float capacity)
{
    sizing.state.MaxValveCap = capacity;
    sizing.screen.setCaption(Label::lblMaxValveCapacity, sizing.numbers.general(static_cast<double>(capacity)));
}

float roundedGasCapacity(const SizingContext& sizing, double tableCapacity)
{
    return toSingle(toWhole(tableCapacity * static_cast<double>(sizing.state.GasFactor)));
}

const char* brokenModelRule(const SizingContext& sizing)
{
    const SizingState& state = sizing.state;
    const double pressure = readNumber(sizing.numbers, sizing.screen.text(Box::txtPressure));
    const Offer* const offer = findOffer(state.ValveModel, choice::pad, state.PressUnits);
    const bool isBroken =
        offer != nullptr && pressure < offer->minimum.lowest && state.SelectedCv > offer->minimum.exemptUpToCv;
    return isBroken ? offer->minimum.message : nullptr;
}

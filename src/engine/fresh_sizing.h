#pragma once

#include "app/sizing_state.h"
#include "base/gases.h"
#include "base/number_text.h"
#include "base/setup_choices.h"
#include "base/sizing_context.h"
#include "engine/plain_screen.h"
#include "engine/sizing_driver.h"

#include <string>

/// Record and main screen without a window, as a fresh pass through the setup screen leaves them.
struct FreshSizing
{
    SizingState state;
    PlainScreen screen;
    RecordedMessages messages;

    FreshSizing(const Offer& offer, const std::string& sizingMethod, const NumberText& numbers)
    {
        storeOffer(state, offer);
        state.SizingMethod = sizingMethod;
        const Gas& gas = firstGas(offer.valveType);
        screen.boxes[Box::cmbBlanketingGas] = gas.name;
        screen.boxes[Box::txtSpecGrav] = numbers.general(gas.specGrav);
        if (!asksFor(sizingCaseOf(state), Box::txtTankVolume))
            screen.boxes[Box::txtTankVolume] = "0";
    }

    /// What the sizing routines reach.
    SizingContext context(const NumberText& numbers, CapacityStore& store)
    {
        return {state, screen, messages, numbers, store};
    }

    /// One press of "&Select Valve Size".
    void click(const NumberText& numbers, CapacityStore& store)
    {
        SizingContext sizing = context(numbers, store);
        cmdCalcFlowRate_Click(sizing);
    }
};

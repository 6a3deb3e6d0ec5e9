#pragma once

#include "app/sizing_state.h"
#include "base/main_screen.h"
#include "base/offered.h"

#include <string>
#include <string_view>

/// The sizing case of the chosen valve type and sizing method, such as "Depad API-2000".
inline std::string sizingCaseOf(const SizingState& state)
{
    return state.ValveType + " " + state.SizingMethod;
}

/// Whether a sizing case asks for a box of the main form; the boxes that it does not ask for are hidden.
inline bool asksFor(std::string_view sizingCase, Box box)
{
    switch (box) {
        case Box::txtTankVolume:
            return sizingCase.ends_with(choice::api2000);
        case Box::txtBoilingPoint:
        case Box::txtFlashPoint:
        case Box::txtStoredMaterial:
            return sizingCase == sizing_case::depadApi2000;
        default:
            return true;
    }
}

/// Stores what leaving the setup screen stores of a pressure unit that is offered: model, type, unit system, units and
/// capacity table.
inline void storeOffer(SizingState& state, const Offer& offer)
{
    const UnitSystem& units = *unitsOf(offer.unitSystem);
    state.ValveModel = offer.valveModel;
    state.ValveType = offer.valveType;
    state.UnitSystem = offer.unitSystem;
    state.PumpRateUnits = units.pumpRate;
    state.PressUnits = offer.pressUnits;
    state.FlowUnits = units.flow;
    state.VolUnits = units.volume;
    state.ValveTable = offer.valveTable;
}

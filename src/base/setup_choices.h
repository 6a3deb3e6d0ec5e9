#pragma once

#include "app/sizing_state.h"
#include "base/offered.h"

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

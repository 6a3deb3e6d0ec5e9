#pragma once

#include "app/sizing_state.h"
#include "base/number_text.h"
#include "base/sizing_context.h"
#include "capacity/capacity_store.h"
#include "engine/sizing_driver.h"
#include "support/cases.h"

/// One press of "&Select Valve Size" on a main screen without a window, as after a fresh pass through the setup screen.
struct Sizing
{
    SizingState state;
    PlainScreen screen;
    RecordedMessages messages;
    NumberText numbers;
    CapacityStore store{testTables(), numbers};

    Sizing(const Sizing&) = delete; // the store refers to the number texts
    explicit Sizing(const Case& row)
    {
        state.ValveModel = row["Valve Model"];
        state.ValveType = row["Valve Type"];
        state.SizingMethod = row["Sizing Method"];
        state.UnitSystem = row["Units of Measure"];
        state.PressUnits = row["Units of Pressure"];
        for (const Offer& offer : offers)
            if (state.ValveType == offer.valveType && state.PressUnits == offer.pressUnits)
                state.ValveTable = offer.valveTable;
        const UnitSystem& units = *unitsOf(state.UnitSystem);
        state.PumpRateUnits = units.pumpRate;
        state.FlowUnits = units.flow;
        state.VolUnits = units.volume;
        for (const auto& [column, box] : entryColumns)
            screen.boxes[box] = row[column];
        state.CustomerName = "a customer";
        state.CustomerLocation = "a place";
        state.CustTagNo = "a tag";
        state.Notes = "notes";
        state.Representative = "a representative";
        screen.boxes[Box::cmbBlanketingGas] = "a gas";
        screen.boxes[Box::txtStoredMaterial] = "a material";
        SizingContext sizing{state, screen, messages, numbers, store};
        cmdCalcFlowRate_Click(sizing);
    }
};

#pragma once

#include "capacity/capacity_store.h"
#include "engine/fresh_sizing.h"
#include "support/cases.h"

/// One press of "&Select Valve Size" on a main screen without a window, as after a fresh pass through the setup screen.
struct Sizing : FreshSizing
{
    NumberText numbers;
    CapacityStore store{testTables(), numbers};

    Sizing(const Sizing&) = delete; // the store refers to the number texts
    explicit Sizing(const Case& row) : FreshSizing(offerOf(row), row["Sizing Method"], NumberText())
    {
        for (const auto& [column, box] : entryColumns)
            screen.boxes[box] = row[column];
        state.CustomerName = "a customer";
        state.CustomerLocation = "a place";
        state.CustTagNo = "a tag";
        state.Notes = "notes";
        state.Representative = "a representative";
        screen.boxes[Box::cmbBlanketingGas] = "a gas";
        screen.boxes[Box::txtStoredMaterial] = "a material";
        click(numbers, store);
    }

private:
    static const Offer& offerOf(const Case& row)
    {
        return *findOffer(row["Valve Model"], row["Valve Type"], row["Units of Pressure"]);
    }
};

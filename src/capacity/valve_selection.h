#pragma once

#include <cstdint>

struct SizingContext;

/// Chooses the smallest adequate valve for `ShownTotalFlow` from the capacity table and works out its capacity for the
/// actual gas. No adequate valve, or a supply pressure below the model's minimum: message in `lblComments` and
/// `SizingError`. A `GasFactor` of 0 or an unreadable pressure: message box, `SizingError`, main form emptied.
void modGetValveData(SizingContext& sizing);

/// Empties the valve results on the main form; the sizing state keeps them.
void modClearSizingData(SizingContext& sizing);

/// `flow` of the actual gas in the flow basis of the capacity tables, as a whole number (halves to even). A `GasFactor`
/// of 0 is a division by zero.
std::int32_t tableFlow(const SizingContext& sizing, double flow);

/// Writes `MaxValveCap` into its caption, uncut: a single 12098.1 shows as 12098.099609375.
void showMaxValveCap(SizingContext& sizing);

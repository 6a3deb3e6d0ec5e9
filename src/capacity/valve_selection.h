#pragma once

struct SizingContext;

/// Chooses the smallest adequate valve for `ShownTotalFlow` from the capacity table and works out its capacity for the
/// actual gas. No adequate valve, or a supply pressure below the model's minimum: message in `lblComments` and
/// `SizingError`. A `GasFactor` of 0 or an unreadable pressure: message box, `SizingError`, main form emptied.
void modGetValveData(SizingContext& sizing);

/// No valve for the duty: the message of the valve type in `lblComments`, and `SizingError`.
void refuseForCapacity(SizingContext& sizing);

/// Empties the valve results on the main form; the sizing state keeps them.
void modClearSizingData(SizingContext& sizing);

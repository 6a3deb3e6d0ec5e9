#pragma once

struct SizingContext;
struct SizingState;

// How a click becomes a valve. Start reading here.
//
// 1. `cmdCalcFlowRate_Click` (below) joins valve type and method to the sizing case, for example "Depad API-2000".
// 2. `modErrorCheck` (engine/input_checks) reads the boxes of the main form, refuses what cannot be sized with a
//    message in `lblComments`, and copies the rest into `SizingState` (app/sizing_state.h).
// 3. `modSizeValve` (below) drives the sizing; each step may raise `SizingError`, which ends it:
//    a. `modCalcFlowRate` (engine/required_flow): pump flow + thermal breathing flow (large tanks:
//       engine/large_tank_breathing) = total flow, and `GasFactor`; shown in the "Flow Rates" row.
//    b. `modMaxMinCheck` (engine/pressure_range) refuses a pressure outside the model's range.
//    c. The shown total flow is read back as a whole number: what the user sees is what is sized.
//    d. `modGetValveData` (capacity/valve_selection) divides that flow by `GasFactor`, finds the first adequate valve
//       with the lookups of capacity/table_lookups and applies the models' minimum pressures (capacity/valve_results).
//    e. `modCheckValveData` (capacity/valve_check) steps the Cv up once when the valve does not exceed the flow.
//    f. Where the lookups have not all read one whole data file, there is no valve.
//    g. The share of the valve's capacity that the duty takes, its advice, and the last captions.
// 4. Both status flags are down again, whatever happened.
//
// The lookups read `capacities.mdb` through capacity/capacity_store. The engine reaches the window only through
// `MainScreen` (base/main_screen.h), which `MainForm` (app/main_form) implements.

/// One press of "&Select Valve Size".
void cmdCalcFlowRate_Click(SizingContext& sizing);

/// The share of the valve's capacity that the duty takes, in percent. It is multiplied in single precision on
/// purpose: 0.015F * 100 then is exactly 1.5 and rounds to 2. In double precision it would be 1.4999...
float percentOfCapacity(const SizingState& state);

/// Sizes a valve for the checked entries in the sizing state. A capacity of 0 or an unreadable shown flow: message box
/// and `SizingError`; whatever the earlier steps put on the form stays.
void modSizeValve(SizingContext& sizing);

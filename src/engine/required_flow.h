#pragma once

class MainScreen;
class NumberText;
struct SizingContext;
struct SizingState;

/// The gas flow the valve must pass: pump flow plus, for "API-2000", the thermal breathing flow of API Standard 2000,
/// in SCFH ("US") or Nm3/h ("Metric"). Also works out the gas correction factor and fills the "Flow Rates" row of the
/// main form. A specific gravity of 0, and a flash or boiling point that is not a number, end it with a message,
/// `SizingError` set and the main form emptied; a gravity below 0 ends it in silence, before anything is shown.
void modCalcFlowRate(SizingContext& sizing);

/// Whether the stored material counts as one of high flash or boiling point: at the limit it does. The flash point
/// decides when `txtFlashPoint` is not empty, else the boiling point. A stored text that is no number is a type
/// mismatch.
bool isHighFlashBoil(const SizingState& state, const MainScreen& screen, const NumberText& numbers);

#pragma once

struct SizingContext;

/// The gas flow the valve must pass: pump flow plus, for "API-2000", the thermal breathing flow of API Standard 2000,
/// in SCFH ("US") or Nm3/h ("Metric"). Also works out the gas correction factor and fills the "Flow Rates" row of the
/// main form. A specific gravity of 0, and a flash or boiling point that is not a number, end it with a message,
/// `SizingError` set and the main form emptied.
void modCalcFlowRate(SizingContext& sizing);

#pragma once

struct SizingContext;

/// The message of the first minimum-supply-pressure rule of the pad valve models that the entered pressure and
/// `SelectedCv` break; nullptr when none is broken. Reads the pressure from `txtPressure`: a text that is not a number
/// is a type mismatch.
const char* brokenModelRule(const SizingContext& sizing);

#pragma once

struct SizingContext;

/// The message of the pad valve's minimum-supply-pressure rule, when the entered pressure and `SelectedCv` break it;
/// nullptr when they do not. Reads the pressure from `txtPressure`: a text that is not a number
/// is a type mismatch.
const char* brokenModelRule(const SizingContext& sizing);

#pragma once

#include <cstdint>
#include <string>

struct SizingContext;

// What valve selection and the valve check share: the flow they look up, the results they store and show, and the rule
// of a minimum supply pressure.

/// `flow` of the actual gas in the flow basis of the capacity tables, as a whole number (halves to even). A `GasFactor`
/// of 0 is a division by zero.
std::int32_t tableFlow(const SizingContext& sizing, double flow);

/// Shows `SelectedCv`, widened to double and cut to one decimal.
void showSelectedCv(SizingContext& sizing);

void setValveBodySize(SizingContext& sizing, const std::string& bodySize);

/// Stores the capacity for the actual gas and shows it uncut: a single 12098.1 shows as 12098.099609375.
void setMaxValveCap(SizingContext& sizing, float capacity);

/// A table capacity for the actual gas: multiplied by `GasFactor`, then rounded to a whole number (halves to even).
float roundedGasCapacity(const SizingContext& sizing, double tableCapacity);

/// The message of the pad valve's minimum-supply-pressure rule, when the entered pressure and `SelectedCv` break it;
/// nullptr when they do not. Reads the pressure from `txtPressure`: a text that is not a number is a type mismatch.
const char* brokenModelRule(const SizingContext& sizing);

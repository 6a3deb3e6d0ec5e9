#pragma once

struct SizingContext;

inline constexpr double largestPumpRate = 100000; // gpm and m3/h alike: beyond the capacity of any valve

/// Checks the main form's entries in a fixed order and copies them into the sizing state. The first failing check
/// writes its message into `lblComments` (an entry that is not a number: nothing) and sets `InputError`; what was
/// copied before it stays copied.
void modErrorCheck(SizingContext& sizing);

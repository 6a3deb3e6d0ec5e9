#pragma once

#include <cstdint>
#include <string>

struct SizingContext;

// Lookups in the capacity table `ValveTable`. `pressure` is in the table's unit, `flow` in its flow basis. Each opens
// the data file, walks one table or query to the first adequate row (tabulated pressure not below `pressure`, capacity
// above `flow`) and closes the file. Nothing found, and any failure: "" or 0; a division by zero or a type mismatch is
// shown first and empties the main form. None of them sets `SizingError`.

/// Body size of the first adequate valve, in ascending pressure, then capacity.
std::string modLookupSizePad(SizingContext& sizing, double pressure, std::int32_t flow);
std::string modLookupSizeDepad(SizingContext& sizing, double pressure, std::int32_t flow);

/// Flow coefficient of the same valve.
double modLookupCVPad(SizingContext& sizing, double pressure, std::int32_t flow);
double modLookupCVDepad(SizingContext& sizing, double pressure, std::int32_t flow);

/// Capacity of the valve with `SelectedCv` at `pressure`, on the straight line between the rows around it.
double modLookupSCFHPad(SizingContext& sizing, double pressure, std::int32_t flow);
double modLookupSCFHDepad(SizingContext& sizing, double pressure, std::int32_t flow);

/// Whether the pad capacity lookup takes the Cv from `CvText`: the two below 1, which have a separator in every locale.
bool usesCvText(float cv);

/// Sets `CvText` to `SelectedCv` with "." as its decimal point. For 0.2 and 0.4 only.
void modStoreCV(SizingContext& sizing);

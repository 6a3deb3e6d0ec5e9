#pragma once

struct SizingContext;

// Thermal breathing flow of tanks above the small-tank limit, from the large-tank table of the unit system: straight
// line between the rows around `volume` (US gallons, SCFH; or m3, Nm3/h). 0 without a message when the table does not
// reach around the volume or cannot be read; a division by zero or a type mismatch is shown and empties the main form.

double modGetLargeTankBRPad(SizingContext& sizing, double volume);
double modGetLargeTankBRDepadHFP(SizingContext& sizing, double volume); ///< high flash or boiling point
double modGetLargeTankBRDepadLFP(SizingContext& sizing, double volume); ///< low flash or boiling point

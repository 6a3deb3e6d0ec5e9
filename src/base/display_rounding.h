#pragma once

struct SizingContext;

/// `value` cut (not rounded) to one decimal, towards minus infinity: 2.97 gives 2.9, -2.97 gives -3. A value too large
/// shows "Value too large. Round1Place", sets `SizingError` and gives 0.
double Round1Place(SizingContext& sizing, double value);

/// The same to two decimals: 0.9995 gives 0.99, and 0.29 gives 0.28 because its double times 100 lies below 29.
double Round2Places(SizingContext& sizing, double value);

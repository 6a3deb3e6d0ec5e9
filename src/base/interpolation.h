#pragma once

struct SizingContext;

/// The value at `x` on the straight line through (x1, y1) and (x2, y2), measured back from the upper point. Serves the
/// large-tank table and the capacity lookups. With x1 = x2 it shows "Error Code 11; modInterpolate", empties the main
/// form and gives 0.
double modInterpolate(SizingContext& sizing, double x1, double x, double x2, double y1, double y2);

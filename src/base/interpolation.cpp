#include "base/interpolation.h"

#include "base/checked_math.h"
#include "base/lookup_handler.h"

double modInterpolate(SizingContext& sizing, double x1, double x, double x2, double y1, double y2)
{
    return lookupOr(0.0, sizing, "modInterpolate", [&] {
        const double a = x2 - x;
        const double b = x2 - x1;
        const double c = y2 - y1;
        const double d = divide(a, b) * c;
        return y2 - d;
    });
}

#include "engine/interpolation.h"

#include "engine/checked_math.h"
#include "engine/main_screen.h"
#include "engine/sizing_context.h"

double modInterpolate(SizingContext& sizing, double x1, double x, double x2, double y1, double y2)
{
    double result = 0;
    withHandler(
        sizing.messageBox, errorCodes("modInterpolate"),
        [&] {
            const double a = x2 - x;
            const double b = x2 - x1;
            const double c = y2 - y1;
            const double d = divide(a, b) * c;
            result = y2 - d;
        },
        [&] { sizing.screen.modClearData(); });
    return result;
}

#include "base/display_rounding.h"

#include "app/sizing_state.h"
#include "base/message_box.h"
#include "base/sizing_context.h"

#include <cmath>
#include <string>

namespace
{

double cut(SizingContext& sizing, double value, double scale, const char* routine)
{
    const double product = value * scale;
    if (std::isinf(product)) {
        sizing.messageBox.show(std::string("Value too large. ") + routine);
        sizing.state.SizingError = true;
        return 0;
    }
    return std::floor(product) / scale;
}

} // namespace

double Round1Place(SizingContext& sizing, double value)
{
    return cut(sizing, value, 10, "Round1Place");
}

double Round2Places(SizingContext& sizing, double value)
{
    return cut(sizing, value, 100, "Round2Places");
}

#include "engine/large_tank_breathing.h"

#include "app/sizing_state.h"
#include "base/interpolation.h"
#include "base/lookup_handler.h"
#include "base/offered.h"
#include "capacity/capacity_store.h"

namespace
{

double flowFromTable(SizingContext& sizing, const char* rateColumn, double volume)
{
    const char* const text =
        sizing.state.UnitSystem == choice::us ? "Select * FROM USLargeTank" : "Select * FROM MetriclargeTank";
    constexpr std::size_t tankVol = 0;
    constexpr std::size_t rate = 1;
    CapacityRows rows = sizing.store.query(text, {"TankVol", rateColumn});
    while (!rows.atEnd() && rows.number(tankVol) < volume)
        rows.next();
    if (rows.atEnd())
        return 0;

    const double x2 = rows.number(tankVol);
    const double y2 = rows.number(rate);
    if (x2 == volume)
        return y2;
    rows.previous();
    return modInterpolate(sizing, rows.number(tankVol), volume, x2, rows.number(rate), y2);
}

double lookup(SizingContext& sizing, const char* routine, const char* rateColumn, double volume)
{
    return lookupOr(0.0, sizing, routine, [&] { return flowFromTable(sizing, rateColumn, volume); });
}

} // namespace

double modGetLargeTankBRPad(SizingContext& sizing, double volume)
{
    return lookup(sizing, "modGetLargeTankBRPad", "Pad", volume);
}

double modGetLargeTankBRDepadHFP(SizingContext& sizing, double volume)
{
    return lookup(sizing, "modGetLargeTankBRDepadHFP", "DepadHFP", volume);
}

double modGetLargeTankBRDepadLFP(SizingContext& sizing, double volume)
{
    return lookup(sizing, "modGetLargeTankBRDepadLFP", "DepadLFP", volume);
}

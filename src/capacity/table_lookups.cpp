#include "capacity/table_lookups.h"

#include "app/sizing_state.h"
#include "base/interpolation.h"
#include "base/lookup_handler.h"
#include "base/number_text.h"
#include "base/text.h"
#include "capacity/capacity_store.h"

namespace
{

// The columns that every lookup walks by.
const Columns walkedColumns = {"Pressure", "flow"};
constexpr std::size_t pressureColumn = 0;
constexpr std::size_t flowColumn = 1;

/// Moves `rows` to the first adequate row; past the last one when there is none. A row without a pressure or a
/// capacity is never adequate.
void walkToAdequate(CapacityRows& rows, double pressure, std::int32_t flow)
{
    for (; !rows.atEnd(); rows.next()) {
        const auto rowPressure = rows.numberOrEmpty(pressureColumn);
        const auto rowFlow = rows.numberOrEmpty(flowColumn);
        if (rowPressure && rowFlow && *rowPressure >= pressure && flow < *rowFlow)
            return;
    }
}

/// What the first adequate row of the valve table has in a column; nothing when there is no such row.
template <typename Value>
Value lookupFirst(SizingContext& sizing, const char* routine, double pressure, std::int32_t flow,
                  Value (CapacityRows::*read)(const char*) const, const char* column)
{
    return lookupOr(Value(), sizing, routine, [&] {
        CapacityRows rows = sizing.store.table(sizing.state.ValveTable, walkedColumns);
        walkToAdequate(rows, pressure, flow);
        return rows.atEnd() ? Value() : (rows.*read)(column);
    });
}

double lookupCapacity(SizingContext& sizing, const char* routine, const std::string& cvLiteral, double pressure,
                      std::int32_t flow)
{
    return lookupOr(0.0, sizing, routine, [&] {
        CapacityRows rows = sizing.store.query("Select * FROM " + sizing.state.ValveTable + " WHERE CV = " + cvLiteral +
                                                   " ORDER BY Pressure ASC, flow ASC",
                                               walkedColumns);
        walkToAdequate(rows, pressure, flow);
        if (rows.atEnd())
            return 0.0;
        const double upperPressure = rows.number(pressureColumn);
        const double upperFlow = rows.number(flowColumn);
        if (upperPressure == pressure)
            return upperFlow;
        rows.previous();
        return modInterpolate(sizing, rows.number(pressureColumn), pressure, upperPressure, rows.number(flowColumn),
                              upperFlow);
    });
}

} // namespace

std::string modLookupSizePad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    return lookupFirst(sizing, "modLookupSizePad", pressure, flow, &CapacityRows::text, "Bodysize");
}

std::string modLookupSizeDepad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    return lookupFirst(sizing, "modLookupSizeDepad", pressure, flow, &CapacityRows::text, "Bodysize");
}

double modLookupCVPad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    return lookupFirst<double>(sizing, "modLookupCVPad", pressure, flow, &CapacityRows::number, "CV");
}

double modLookupCVDepad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    return lookupFirst<double>(sizing, "modLookupCVDepad", pressure, flow, &CapacityRows::number, "CV");
}

double modLookupSCFHPad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    const float cv = sizing.state.SelectedCv;
    return lookupCapacity(sizing, "modLookupSCFHPad", usesCvText(cv) ? sizing.state.CvText : sizing.numbers.general(cv),
                          pressure, flow);
}

double modLookupSCFHDepad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    return lookupCapacity(sizing, "modLookupSCFHDepad", sizing.numbers.general(sizing.state.SelectedCv), pressure,
                          flow);
}

bool usesCvText(float cv)
{
    return cv == 0.2F || cv == 0.4F;
}

void modStoreCV(SizingContext& sizing)
{
    std::string text = sizing.numbers.general(sizing.state.SelectedCv);
    if (text.size() > 1) // the second character is the separator
        text.replace(1, firstLength(std::string_view(text).substr(1)), ".");
    sizing.state.CvText = text;
}

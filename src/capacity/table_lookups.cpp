#include "capacity/table_lookups.h"

#include "app/sizing_state.h"
#include "base/interpolation.h"
#include "base/lookup_handler.h"
#include "base/number_text.h"
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

std::string lookupSize(SizingContext& sizing, const char* routine, double pressure, std::int32_t flow)
{
    return lookupOr(std::string(), sizing, routine, [&] {
        CapacityRows rows = sizing.store.table(sizing.state.ValveTable, walkedColumns);
        walkToAdequate(rows, pressure, flow);
        return rows.atEnd() ? std::string() : rows.text("Bodysize");
    });
}

double lookupCv(SizingContext& sizing, const char* routine, double pressure, std::int32_t flow)
{
    return lookupOr(0.0, sizing, routine, [&] {
        CapacityRows rows = sizing.store.table(sizing.state.ValveTable, walkedColumns);
        walkToAdequate(rows, pressure, flow);
        return rows.atEnd() ? 0.0 : rows.number("CV");
    });
}

double capacityOf(SizingContext& sizing, const std::string& cvLiteral, double pressure, std::int32_t flow)
{
    CapacityRows rows = sizing.store.query("Select * FROM " + sizing.state.ValveTable + " WHERE CV = " + cvLiteral +
                                               " ORDER BY Pressure ASC, flow ASC",
                                           walkedColumns);
    walkToAdequate(rows, pressure, flow);
    if (rows.atEnd())
        return 0;

    const double upperPressure = rows.number(pressureColumn);
    const double upperFlow = rows.number(flowColumn);
    if (upperPressure == pressure)
        return upperFlow;
    rows.previous();
    return modInterpolate(sizing, rows.number(pressureColumn), pressure, upperPressure, rows.number(flowColumn),
                          upperFlow);
}

double lookupCapacity(SizingContext& sizing, const char* routine, const std::string& cvLiteral, double pressure,
                      std::int32_t flow)
{
    return lookupOr(0.0, sizing, routine, [&] { return capacityOf(sizing, cvLiteral, pressure, flow); });
}

} // namespace

std::string modLookupSizePad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    return lookupSize(sizing, "modLookupSizePad", pressure, flow);
}

std::string modLookupSizeDepad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    return lookupSize(sizing, "modLookupSizeDepad", pressure, flow);
}

double modLookupCVPad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    return lookupCv(sizing, "modLookupCVPad", pressure, flow);
}

double modLookupCVDepad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    return lookupCv(sizing, "modLookupCVDepad", pressure, flow);
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
    // The second character is the separator; in UTF-8 it may have several bytes.
    std::size_t length = 1;
    while (length + 1 < text.size() && (static_cast<unsigned char>(text[length + 1]) & 0xC0) == 0x80)
        ++length;
    if (text.size() > 1)
        text.replace(1, length, ".");
    sizing.state.CvText = text;
}

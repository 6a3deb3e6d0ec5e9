#include "capacity/table_lookups.h"

#include "app/sizing_state.h"
#include "capacity/capacity_store.h"
#include "engine/failure.h"
#include "engine/interpolation.h"
#include "engine/main_screen.h"
#include "engine/sizing_context.h"
#include "platform/number_text.h"

namespace
{

/// Moves `rows` to the first adequate row; past the last one when there is none. A row without a pressure or a
/// capacity is never adequate.
void walkToAdequate(CapacityRows& rows, double pressure, std::int32_t flow)
{
    const int pressureColumn = rows.column("Pressure");
    const int flowColumn = rows.column("flow");
    for (; !rows.atEnd(); rows.next()) {
        const auto rowPressure = rows.numberOrEmpty(pressureColumn);
        const auto rowFlow = rows.numberOrEmpty(flowColumn);
        if (rowPressure && rowFlow && *rowPressure >= pressure && flow < *rowFlow)
            return;
    }
}

/// Runs one lookup under its handler. `read` gives the result; `nothing` is the result when it fails.
template <typename Result, typename Read>
Result lookup(SizingContext& sizing, const char* routine, Result nothing, Read read)
{
    Result result = nothing;
    withHandler(
        sizing.messageBox, errorCodes(routine), [&] { result = read(); }, [&] { sizing.screen.modClearData(); });
    return result;
}

std::string lookupSize(SizingContext& sizing, const char* routine, double pressure, std::int32_t flow)
{
    return lookup(sizing, routine, std::string(), [&] {
        CapacityRows rows = sizing.store.table(sizing.state.ValveTable);
        walkToAdequate(rows, pressure, flow);
        return rows.atEnd() ? std::string() : rows.text(rows.column("Bodysize"));
    });
}

double lookupCv(SizingContext& sizing, const char* routine, double pressure, std::int32_t flow)
{
    return lookup(sizing, routine, 0.0, [&] {
        CapacityRows rows = sizing.store.table(sizing.state.ValveTable);
        walkToAdequate(rows, pressure, flow);
        return rows.atEnd() ? 0.0 : rows.number(rows.column("CV"));
    });
}

double capacityOf(SizingContext& sizing, const std::string& cvLiteral, double pressure, std::int32_t flow)
{
    CapacityRows rows = sizing.store.query("Select * FROM " + sizing.state.ValveTable + " WHERE CV = " + cvLiteral +
                                           " ORDER BY Pressure ASC, flow ASC");
    walkToAdequate(rows, pressure, flow);
    if (rows.atEnd())
        return 0;

    const int pressureColumn = rows.column("Pressure");
    const int flowColumn = rows.column("flow");
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
    return lookup(sizing, routine, 0.0, [&] { return capacityOf(sizing, cvLiteral, pressure, flow); });
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
    const bool stored = cv == 0.2F || cv == 0.4F;
    return lookupCapacity(sizing, "modLookupSCFHPad", stored ? sizing.state.CvText : sizing.numbers.general(cv),
                          pressure, flow);
}

double modLookupSCFHDepad(SizingContext& sizing, double pressure, std::int32_t flow)
{
    return lookupCapacity(sizing, "modLookupSCFHDepad", sizing.numbers.general(sizing.state.SelectedCv), pressure,
                          flow);
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

#include "engine/required_flow.h"

#include "app/sizing_state.h"
#include "base/checked_math.h"
#include "base/display_rounding.h"
#include "base/main_screen.h"
#include "base/number_text.h"
#include "base/read_number.h"
#include "base/setup_choices.h"
#include "base/sizing_context.h"
#include "engine/large_tank_breathing.h"
#include "engine/tank_limits.h"

#include <cmath>

namespace
{

/// Whether the stored material counts as one of high or of low flash or boiling point, where the case asks for these.
enum class Point
{
    any,
    high,
    low
};

/// A conversion factor in both unit systems. Singles, widened to double when used: the shown digits depend on it.
struct Factor
{
    float us;
    float metric;
};

// Of the method of API Standard 2000: gas flow per pump rate (SCFH per gpm, Nm3/h per m3/h) and per tank volume (SCFH
// per gallon, Nm3/h per m3).
constexpr Factor displaced{8.0F, 1.01F};        // volume for volume: 1 gpm is 8.02 ft3/h
constexpr Factor outbreathingHigh{8.6F, 1.01F}; // liquid in, high flash or boiling point: 6 SCFH per 42 gal/h
constexpr Factor outbreathingLow{17.1F, 2.02F}; // twice the volume, 12 SCFH per 42 gal/h: the liquid gives off vapour
constexpr Factor noBreathing{0, 0};
constexpr Factor thermal{1.0F / 42, 0.169F}; // 1 SCFH a barrel of 42 gal
constexpr Factor thermalHigh{0.0143F, 0.1F}; // 60 % of it: no vapour to flash

struct FlowRule
{
    const char* sizingCase;
    Point point;
    Factor pump;
    Factor breathing;
    double (*largeTank)(SizingContext&, double); ///< nullptr: no thermal breathing
    double tableGravityRoot; ///< square root of the specific gravity that the capacity tables refer to
};

constexpr double nitrogenTables = 0.985; // of 0.97
constexpr double airTables = 1.0;

constexpr FlowRule flowRules[] = {
    {sizing_case::padDirectDisplacement, Point::any, displaced, noBreathing, nullptr, nitrogenTables},
    {sizing_case::depadDirectDisplacement, Point::any, displaced, noBreathing, nullptr, airTables},
    {sizing_case::padApi2000, Point::any, displaced, thermal, modGetLargeTankBRPad, nitrogenTables},
    {sizing_case::depadApi2000, Point::high, outbreathingHigh, thermalHigh, modGetLargeTankBRDepadHFP, airTables},
    {sizing_case::depadApi2000, Point::low, outbreathingLow, thermal, modGetLargeTankBRDepadLFP, airTables},
};

Point judgePoint(SizingContext& sizing)
{
    const bool flash = !sizing.screen.text(Box::txtFlashPoint).empty();
    const bool high = isHighFlashBoil(sizing.state, sizing.screen, sizing.numbers);
    sizing.screen.setCaption(Label::lblHFPLFP,
                             std::string(high ? "High " : "Low ") + (flash ? "Flash Point" : "Boiling Point"));
    sizing.state.HighFlashBoil = high;
    return high ? Point::high : Point::low;
}

const FlowRule& ruleOf(SizingContext& sizing)
{
    const std::string& sizingCase = sizing.state.SizingCase;
    const Point point = asksFor(sizingCase, Box::txtFlashPoint) ? judgePoint(sizing) : Point::any;
    for (const FlowRule& rule : flowRules)
        if (sizingCase == rule.sizingCase && point == rule.point)
            return rule;
    throw SilentFailure("no such sizing case: " + sizingCase);
}

/// A large tank that the table has no answer for breathes 0, and the sizing goes on: `build_capacities` sees to it that
/// the table reaches from the limit to the largest tank that the input checks let through.
double breathingFlow(SizingContext& sizing, const FlowRule& rule)
{
    const double volume = sizing.state.TankVolume;
    const bool us = sizing.state.UnitSystem == choice::us;
    if (rule.largeTank == nullptr)
        return 0;
    if (volume > (us ? smallTankGallons : smallTankCubicMeters))
        return rule.largeTank(sizing, volume);
    return volume * static_cast<double>(us ? rule.breathing.us : rule.breathing.metric);
}

/// Flows are shown cut to two decimals below 1, to one up to 10, and as whole numbers (halves to even) above.
std::string shownFlow(SizingContext& sizing, double flow)
{
    if (flow < 1)
        return sizing.numbers.general(Round2Places(sizing, flow));
    if (flow <= 10)
        return sizing.numbers.general(Round1Place(sizing, flow));
    return sizing.numbers.general(std::nearbyint(flow));
}

void calculate(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    const FlowRule& rule = ruleOf(sizing);
    state.PumpFlow =
        state.PumpRate * static_cast<double>(state.UnitSystem == choice::us ? rule.pump.us : rule.pump.metric);
    state.BreathingFlow = breathingFlow(sizing, rule);
    state.TotalFlow = state.PumpFlow + state.BreathingFlow;
    state.SpecGravRoot = squareRoot(state.SpecGrav);
    state.GasFactor = toSingle(NumberText::standardValue(divide(rule.tableGravityRoot, state.SpecGravRoot)));

    MainScreen& screen = sizing.screen;
    screen.setCaption(Label::lblPRFlow, shownFlow(sizing, state.PumpFlow));
    screen.setCaption(Label::lblBRFlow, shownFlow(sizing, state.BreathingFlow));
    screen.setCaption(Label::lblTotalFlow, shownFlow(sizing, state.TotalFlow));
    screen.setCaption(Label::lblSGGas, sizing.numbers.standard(state.SpecGrav));
    screen.setCaption(Label::lblComments, "");
}

} // namespace

bool isHighFlashBoil(const SizingState& state, const MainScreen& screen, const NumberText& numbers)
{
    const bool us = state.UnitSystem == choice::us;
    const bool flash = !screen.text(Box::txtFlashPoint).empty();
    const double limit = flash ? (us ? 100 : 38) : (us ? 300 : 149); // degF or degC, of API Standard 2000
    return readNumber(numbers, flash ? state.FlashPoint : state.BoilingPoint) >= limit;
}

void modCalcFlowRate(SizingContext& sizing)
{
    // The two texts differ in the case of "Flowrate".
    withHandler(
        sizing.messageBox, {"Error Code 11; modCalcFlowRate", "Error Code 13; modCalcFlowrate"},
        [&] { calculate(sizing); },
        [&] {
            sizing.state.SizingError = true;
            sizing.screen.modClearData();
        });
}

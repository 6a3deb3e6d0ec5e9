#include "capacity/model_rules.h"

#include "app/sizing_state.h"
#include "base/main_screen.h"
#include "base/read_number.h"
#include "base/sizing_context.h"

#include <limits>

namespace
{

struct ModelRule
{
    const char* valveModel;
    const char* pressUnits;
    double lowest;      ///< supply pressure that still passes
    float exemptUpToCv; ///< valves up to this Cv are free of the rule
    const char* message;
};

constexpr float halfInchCv = 0.4F; // the largest Cv of the 1/2 inch body; the stored body size is not consulted
constexpr float noneExempt = -std::numeric_limits<float>::infinity();

// The range check has already refused Series 63 below 25 psi, 172 kPa and 1.76 kg/cm2; between that and 1.8 kg/cm2 the
// rule below still does.
constexpr ModelRule modelRules[] = {
    {"Series 61", "PSI", 25, halfInchCv,
     "Series 61 valves larger than 1/2 inch must have a minimum supply pressure of 25 psi."},
    {"Series 61", "kg/cm2", 1.8, halfInchCv,
     "Series 61 valves larger than 1/2 inch must have a minimum supply pressure of 1.8 kg/cm2."},
    {"Series 61", "kPa", 172, halfInchCv,
     "Series 61 valves larger than 1/2 inch must have a minimum supply pressure of 172 kPa."},
    {"Series 63", "PSI", 25, noneExempt, "Series 63 valves must have a minimum supply pressure of 25 psi."},
    {"Series 63", "kg/cm2", 1.8, noneExempt, "Series 63 valves must have a minimum supply pressure of 1.8 kg/cm2."},
    {"Series 63", "kPa", 172, noneExempt, "Series 63 valves require a minimum supply pressure of 172 kPa."},
};

} // namespace

const char* brokenModelRule(const SizingContext& sizing)
{
    const SizingState& state = sizing.state;
    const double pressure = readNumber(sizing.numbers, sizing.screen.text(Box::txtPressure));
    for (const ModelRule& rule : modelRules)
        if (state.ValveModel == rule.valveModel && state.PressUnits == rule.pressUnits && pressure < rule.lowest &&
            state.SelectedCv > rule.exemptUpToCv)
            return rule.message;
    return nullptr;
}

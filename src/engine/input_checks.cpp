#include "engine/input_checks.h"

#include "app/sizing_state.h"
#include "base/failure.h"
#include "base/main_screen.h"
#include "base/number_text.h"
#include "base/setup_choices.h"
#include "base/sizing_context.h"
#include "engine/tank_limits.h"

#include <optional>
#include <utility>

namespace
{

/// Why the entries are refused, and which box it is about.
struct Refusal
{
    Box box;
    const char* message = nullptr; ///< nullptr: the text of the box is not a number, of which nothing is said
};
using Check = std::optional<Refusal>;
constexpr Check passed = std::nullopt;

bool isEmpty(const SizingContext& sizing, Box box)
{
    return sizing.screen.text(box).empty();
}

Check copyNumber(const SizingContext& sizing, Box box, double& value)
{
    const std::optional<double> number = sizing.numbers.parse(sizing.screen.text(box));
    if (!number)
        return Refusal{box};
    value = *number;
    return passed;
}

Check copyNumbers(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    for (const Box box : {Box::txtPumpRate, Box::txtPressure}) // in tab order
        if (isEmpty(sizing, box))
            return Refusal{box, "Please enter Pressure and Pump-Rate information."};
    if (state.ValveType == choice::pad && isEmpty(sizing, Box::txtSpecGrav))
        return Refusal{Box::txtSpecGrav, "Please enter the specific gravity of the blanketing gas."};
    if (state.ValveType == choice::depad && isEmpty(sizing, Box::txtSpecGrav))
        return Refusal{Box::txtSpecGrav, "Please enter the specific gravity of the vented gas."};
    for (const auto& [box, value] : {std::pair{Box::txtSpecGrav, &state.SpecGrav},
                                     {Box::txtPumpRate, &state.PumpRate},
                                     {Box::txtPressure, &state.InputPressure}})
        if (const Check refusal = copyNumber(sizing, box, *value))
            return refusal;
    if (isEmpty(sizing, Box::txtTankVolume) && asksFor(sizingCaseOf(state), Box::txtTankVolume))
        return Refusal{Box::txtTankVolume, "Please enter the Tank Volume."};
    return copyNumber(sizing, Box::txtTankVolume, state.TankVolume);
}

Check checkRateAndPressure(const SizingState& state)
{
    const bool pad = state.ValveType == choice::pad;
    const bool depad = state.ValveType == choice::depad;
    if (state.PumpRate > largestPumpRate)
        return Refusal{Box::txtPumpRate, "Pump-Rate will exceed the maximum available valve capacity."};
    if (pad && state.InputPressure <= 0)
        return Refusal{Box::txtPressure, "Supply Pressure must be greater than zero."};
    if (depad && state.InputPressure <= 0)
        return Refusal{Box::txtPressure, "Differential Pressure must be greater than zero."};
    if (pad && state.PumpRate <= 0)
        return Refusal{Box::txtPumpRate, "Pump-out rate must be greater than zero."};
    if (depad && state.PumpRate <= 0)
        return Refusal{Box::txtPumpRate, "Pump-in rate must be greater than zero."};
    return passed;
}

Check checkTankVolume(const SizingState& state)
{
    if (!asksFor(sizingCaseOf(state), Box::txtTankVolume))
        return passed;
    if (state.UnitSystem == choice::us && state.TankVolume > largestTankGallons)
        return Refusal{
            Box::txtTankVolume,
            "There are special requirements for tanks larger than 7,560,000 gallons. Refer to API Publication 2000."};
    if (state.UnitSystem == choice::metric && state.TankVolume > largestTankCubicMeters)
        return Refusal{Box::txtTankVolume, "There are special requirements for tanks larger than 30,000 cubic meters."};
    if (state.TankVolume <= 0)
        return Refusal{Box::txtTankVolume, "Tank Volume must be greater than zero."};
    return passed;
}

Check checkEntries(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    if (const Check refusal = copyNumbers(sizing))
        return refusal;
    state.BlanketingGas = sizing.screen.text(Box::cmbBlanketingGas);
    state.StoredMaterial = sizing.screen.text(Box::txtStoredMaterial);
    if (const Check refusal = checkRateAndPressure(state))
        return refusal;
    if (isEmpty(sizing, Box::txtFlashPoint) && isEmpty(sizing, Box::txtBoilingPoint) &&
        asksFor(sizingCaseOf(state), Box::txtFlashPoint))
        return Refusal{Box::txtBoilingPoint,
                       "Please enter the Flash Point and/or Boiling Point of the Stored Material."};
    state.BoilingPoint = sizing.screen.text(Box::txtBoilingPoint);
    state.FlashPoint = sizing.screen.text(Box::txtFlashPoint);
    return checkTankVolume(state);
}

} // namespace

void modErrorCheck(SizingContext& sizing)
{
    const auto check = [&] {
        const Check refusal = checkEntries(sizing);
        if (!refusal)
            return;
        if (refusal->message != nullptr)
            sizing.screen.setCaption(Label::lblComments, refusal->message);
        sizing.screen.refusedAt(refusal->box);
        sizing.state.InputError = true;
    };
    withHandler(sizing.messageBox, errorCodes("modErrorCheck"), check, [&] { sizing.state.InputError = true; });
}

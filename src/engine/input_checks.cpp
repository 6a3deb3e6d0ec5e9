#include "engine/input_checks.h"

#include "app/sizing_state.h"
#include "base/failure.h"
#include "base/main_screen.h"
#include "base/number_text.h"
#include "base/offered.h"
#include "base/sizing_context.h"
#include "engine/tank_limits.h"

#include <optional>

namespace
{

/// Why the entries are refused; nullptr when they pass. `notANumber` refuses without a message.
using Refusal = const char*;
constexpr Refusal passed = nullptr;
constexpr Refusal notANumber = "";

constexpr double largestPumpRate = 100000; // gpm and m3/h alike: beyond the capacity of any valve

bool isEmpty(const SizingContext& sizing, Box box)
{
    return sizing.screen.text(box).empty();
}

bool copyNumber(const SizingContext& sizing, Box box, double& value)
{
    const std::optional<double> number = sizing.numbers.parse(sizing.screen.text(box));
    if (number)
        value = *number;
    return number.has_value();
}

Refusal copyNumbers(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    if (isEmpty(sizing, Box::txtPressure) || isEmpty(sizing, Box::txtPumpRate))
        return "Please enter Pressure and Pump-Rate information.";
    if (state.ValveType == choice::pad && isEmpty(sizing, Box::txtSpecGrav))
        return "Please enter the specific gravity of the blanketing gas.";
    if (state.ValveType == choice::depad && isEmpty(sizing, Box::txtSpecGrav))
        return "Please enter the specific gravity of the vented gas.";
    if (!copyNumber(sizing, Box::txtSpecGrav, state.SpecGrav) ||
        !copyNumber(sizing, Box::txtPumpRate, state.PumpRate) ||
        !copyNumber(sizing, Box::txtPressure, state.InputPressure))
        return notANumber;
    if (isEmpty(sizing, Box::txtTankVolume) && state.SizingMethod == choice::api2000)
        return "Please enter the Tank Volume.";
    if (!copyNumber(sizing, Box::txtTankVolume, state.TankVolume))
        return notANumber;
    return passed;
}

Refusal checkRateAndPressure(const SizingState& state)
{
    const bool pad = state.ValveType == choice::pad;
    const bool depad = state.ValveType == choice::depad;
    if (state.PumpRate > largestPumpRate)
        return "Pump-Rate will exceed the maximum available valve capacity.";
    if (pad && state.InputPressure <= 0)
        return "Supply Pressure must be greater than zero.";
    if (depad && state.InputPressure <= 0)
        return "Differential Pressure must be greater than zero.";
    if (pad && state.PumpRate <= 0)
        return "Pump-out rate must be greater than zero.";
    if (depad && state.PumpRate <= 0)
        return "Pump-in rate must be greater than zero.";
    return passed;
}

Refusal checkTankVolume(const SizingState& state)
{
    if (state.SizingMethod != choice::api2000)
        return passed;
    if (state.UnitSystem == choice::us && state.TankVolume > largestTankGallons)
        return "There are special requirements for tanks larger than 7,560,000 gallons. Refer to API Publication 2000.";
    if (state.UnitSystem == choice::metric && state.TankVolume > largestTankCubicMeters)
        return "There are special requirements for tanks larger than 30,000 cubic meters.";
    if (state.TankVolume <= 0)
        return "Tank Volume must be greater than zero.";
    return passed;
}

Refusal checkEntries(SizingContext& sizing)
{
    SizingState& state = sizing.state;
    if (const Refusal refusal = copyNumbers(sizing))
        return refusal;
    state.BlanketingGas = sizing.screen.text(Box::cmbBlanketingGas);
    state.StoredMaterial = sizing.screen.text(Box::txtStoredMaterial);
    if (const Refusal refusal = checkRateAndPressure(state))
        return refusal;
    if (isEmpty(sizing, Box::txtFlashPoint) && isEmpty(sizing, Box::txtBoilingPoint) &&
        state.SizingMethod == choice::api2000 && state.ValveType == choice::depad)
        return "Please enter the Flash Point and/or Boiling Point of the Stored Material.";
    state.BoilingPoint = sizing.screen.text(Box::txtBoilingPoint);
    state.FlashPoint = sizing.screen.text(Box::txtFlashPoint);
    return checkTankVolume(state);
}

} // namespace

void modErrorCheck(SizingContext& sizing)
{
    const auto check = [&] {
        const Refusal refusal = checkEntries(sizing);
        if (refusal == passed)
            return;
        if (*refusal != '\0')
            sizing.screen.setCaption(Label::lblComments, refusal);
        sizing.state.InputError = true;
    };
    withHandler(sizing.messageBox, errorCodes("modErrorCheck"), check, [&] { sizing.state.InputError = true; });
}

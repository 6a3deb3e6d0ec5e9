#include "app/box_help.h"

#include "app/sizing_state.h"
#include "base/number_text.h"
#include "engine/input_checks.h"
#include "engine/pressure_range.h"
#include "engine/tank_limits.h"

namespace
{

std::string pressureHelp(const SizingState& state, const NumberText& numbers)
{
    const bool pad = state.ValveType == choice::pad;
    std::string help = pad ? "Supply pressure of the blanketing gas before the valve" : "Pressure across the valve";
    help += (pad ? ", gauge, in " : ", in ") + state.PressUnits;
    if (const Offer* const offer = offerOf(state)) {
        help += ": " + numbers.general(offer->lowest) + " to " + numbers.general(offer->highest) + '.';
        if (offer->minimum.message != nullptr && offer->minimum.lowest > offer->lowest)
            help += std::string(" ") + offer->minimum.message;
    }
    return help;
}

std::string pointHelp(const char* point, const SizingState& state)
{
    return std::string(point) + " of the stored material, in deg " + unitsOf(state.UnitSystem)->degrees +
           ": 0 or more. One of boiling and flash point is enough; a flash point wins.";
}

std::string plainHelp(Box box, const SizingState& state, const NumberText& numbers)
{
    const bool pad = state.ValveType == choice::pad;
    const auto upTo = [&](double largest) { return ": above 0, up to " + numbers.general(largest) + '.'; };
    switch (box) {
        case Box::txtPumpRate:
            return std::string("Largest rate at which liquid ") + (pad ? "leaves" : "enters") + " the tank, in " +
                   state.PumpRateUnits + upTo(largestPumpRate);
        case Box::txtPressure:
            return pressureHelp(state, numbers);
        case Box::txtTankVolume:
            return "Volume of the tank, in " + state.VolUnits +
                   upTo(state.UnitSystem == choice::us ? largestTankGallons : largestTankCubicMeters);
        case Box::cmbBlanketingGas:
            return "Pick a gas and its specific gravity is filled in, or type another name.";
        case Box::txtSpecGrav:
            return "Specific gravity of the gas: above 0; air has 1. The gravity of a listed gas names the gas.";
        case Box::txtBoilingPoint:
            return pointHelp("Boiling point", state);
        case Box::txtFlashPoint:
            return pointHelp("Flash point", state);
        case Box::txtStoredMaterial:
            return "Printed on the summary.";
    }
    return {};
}

} // namespace

QString helpOfNumbers(const SizingState& state, const NumberText& numbers)
{
    std::string marks = "'" + numbers.general(0.5) + "'";
    std::erase_if(marks, [](char c) { return c == '0' || c == '5'; });
    if (const std::string money = "'" + state.DecSep + "'"; !state.DecSep.empty() && money != marks)
        marks += " or " + money;
    return QString::fromStdString("Not a number: digits and one " + marks + " only. ");
}

QString helpOf(Box box, const SizingState& state, const NumberText& numbers)
{
    return QString::fromStdString(plainHelp(box, state, numbers));
}

// The load of the main form: its captions, visible fields and first entries for the choices in the record.

#include "app/gas_box.h"
#include "app/main_form.h"
#include "app/sizing_state.h"
#include "base/gases.h"
#include "base/number_text.h"
#include "base/setup_choices.h"

namespace
{

struct ValveTypeTexts
{
    const char* valveType;
    const char* pumpRate;
    const char* breathingFlow;
    const char* pressure;
    const char* blanketingGas;
    const char* specGrav;
};

constexpr ValveTypeTexts valveTypeTexts[] = {
    {choice::pad, "Pump-&Out Rate", "+ Inbreathing Flow", "Supply &Pressure of Blanketing Gas",
     "&Blanketing Gas:", "Specific &Gravity - Blanketing Gas"},
    {choice::depad, "Pump-In Rate", "+ Outbreathing Flow", "Differential &Pressure",
     "&Vented Gas:", "Specific &Gravity - Vented Gas"},
};

constexpr const char* directDisplacementNote =
    "Direct Displacement only accounts for a direct volumetric displacement of liquid/vapor based on the liquid "
    "displacement. It is normally used for indoor storage of low volatility products.";

} // namespace

void MainForm::load()
{
    const SizingState& state = sizing_.state;
    const struct
    {
        MainControl name;
        const std::string& text;
    } choices[] = {{"lblValveModel", state.ValveModel},       {"lblValveType", state.ValveType},
                   {"lblSizingMethod", state.SizingMethod},   {"lblPressureUnits", state.PressUnits},
                   {"lblPumpRateUnits", state.PumpRateUnits}, {"lblVolumeUnits", state.VolUnits}};
    for (const auto& [name, text] : choices)
        setLabelCaption(name, text);

    const bool directDisplacement = state.SizingMethod == choice::directDisplacement;
    if (directDisplacement)
        setText("txtTankVolume", "0");
    hideUnasked();
    loadValveType();

    if (const UnitSystem* const units = unitsOf(state.UnitSystem)) {
        for (const MainControl name : {MainControl("lblFlow1"), MainControl("lblFlow2")})
            setLabelCaption(name, std::string(units->flow) + " of");
        for (const MainControl name : {MainControl("lblTempUnits1"), MainControl("lblTempUnits2")})
            setLabelCaption(name, std::string("(") + units->degrees + ")");
    }

    QStringList names;
    for (const Gas& gas : gases)
        names.append(QString::fromUtf8(gas.name));
    gas_.fill(names);

    // Last: every box written above has emptied the comments.
    if (directDisplacement)
        setCaption(Label::lblComments, directDisplacementNote);
}

void MainForm::loadValveType()
{
    const std::string& valveType = sizing_.state.ValveType;
    for (const ValveTypeTexts& texts : valveTypeTexts) {
        if (valveType != texts.valveType)
            continue;
        setLabelCaption("lblPumpRate", texts.pumpRate);
        setLabelCaption("lblBRFlowLabel", texts.breathingFlow);
        setLabelCaption("lblPressure", texts.pressure);
        setLabelCaption("lblBlanketingGas", texts.blanketingGas);
        setLabelCaption("lblSpecGravlbl", texts.specGrav);
        setText("txtSpecGrav", sizing_.numbers.general(firstGas(valveType).specGrav));
        gas_.setGas(QString::fromUtf8(firstGas(valveType).name));
    }
    if (valveType == choice::pad)
        setCaption(Label::lblHFPLFP, "");
}

#pragma once

#include <cstddef>
#include <iterator>
#include <string>

/// The boxes of the main form that the engine reads.
enum class Box
{
    txtPumpRate,
    txtPressure,
    txtTankVolume,
    cmbBlanketingGas,
    txtSpecGrav,
    txtBoilingPoint,
    txtFlashPoint,
    txtStoredMaterial
};

/// Their names, in the same order.
inline constexpr const char* boxNames[] = {"txtPumpRate", "txtPressure",     "txtTankVolume", "cmbBlanketingGas",
                                           "txtSpecGrav", "txtBoilingPoint", "txtFlashPoint", "txtStoredMaterial"};
static_assert(std::size(boxNames) == static_cast<std::size_t>(Box::txtStoredMaterial) + 1);

/// The captions of the main form that the engine writes. They are part of the result, not decoration: `lblTotalFlow`
/// is read back as the flow that a valve is selected for.
enum class Label
{
    lblHFPLFP,
    lblPRFlow,
    lblBRFlow,
    lblTotalFlow,
    lblSGGas,
    lblCV,
    lblMaxValveCapacity,
    lblSGGas2,
    lblValveBodySize,
    lblPercentValveCapacity,
    lblComments
};

/// Their names, in the same order.
inline constexpr const char* labelNames[] = {
    "lblHFPLFP",  "lblPRFlow",           "lblBRFlow", "lblTotalFlow",     "lblSGGas",
    "lblCV",      "lblMaxValveCapacity", "lblSGGas2", "lblValveBodySize", "lblPercentValveCapacity",
    "lblComments"};
static_assert(std::size(labelNames) == static_cast<std::size_t>(Label::lblComments) + 1);

/// What the engine and the report need of the main form. Texts are UTF-8.
class MainScreen
{
public:
    virtual ~MainScreen() = default;
    virtual std::string text(Box box) const = 0;
    virtual std::string caption(Label label) const = 0;
    virtual void setCaption(Label label, const std::string& caption) = 0;

    /// Empties the inputs and results; the gas, its specific gravity and the choices stay.
    virtual void modClearData() = 0;

    /// Whether "Prin&t" can be pressed.
    virtual void setPrintEnabled(bool enabled) = 0;
};

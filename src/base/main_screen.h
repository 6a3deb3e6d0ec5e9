#pragma once

#include <span>
#include <string>

// Enumerators, their names and all of them are one list: AS_ENUMERATOR, AS_NAME or AS_LABEL is applied to each.
#define AS_ENUMERATOR(name) name,
#define AS_LABEL(name) Label::name,
#define AS_NAME(name) #name,

/// The boxes of the main form that the engine reads.
#define MAIN_BOXES(apply)                                                                                              \
    apply(txtPumpRate) apply(txtPressure) apply(txtTankVolume) apply(cmbBlanketingGas) apply(txtSpecGrav)              \
        apply(txtBoilingPoint) apply(txtFlashPoint) apply(txtStoredMaterial)
enum class Box
{
    MAIN_BOXES(AS_ENUMERATOR)
};
inline constexpr const char* boxNames[] = {MAIN_BOXES(AS_NAME)};

/// The captions of the main form that the engine writes. They are part of the result, not decoration: `lblTotalFlow`
/// is read back as the flow that a valve is selected for.
#define MAIN_LABELS(apply)                                                                                             \
    apply(lblHFPLFP) apply(lblPRFlow) apply(lblBRFlow) apply(lblTotalFlow) apply(lblSGGas) apply(lblCV)                \
        apply(lblMaxValveCapacity) apply(lblSGGas2) apply(lblValveBodySize) apply(lblPercentValveCapacity)             \
            apply(lblComments)
enum class Label
{
    MAIN_LABELS(AS_ENUMERATOR)
};
inline constexpr const char* labelNames[] = {MAIN_LABELS(AS_NAME)};
inline constexpr Label allLabels[] = {MAIN_LABELS(AS_LABEL)};

#undef MAIN_BOXES
#undef MAIN_LABELS
#undef AS_ENUMERATOR
#undef AS_NAME
#undef AS_LABEL

/// What is shown of the chosen valve, but for its utilisation.
inline constexpr Label valveLabels[] = {Label::lblCV, Label::lblMaxValveCapacity, Label::lblValveBodySize};

/// The boxes that `modClearData` empties.
inline constexpr Box clearedBoxes[] = {Box::txtPressure, Box::txtPumpRate, Box::txtFlashPoint, Box::txtBoilingPoint,
                                       Box::txtStoredMaterial};

/// What the engine and the report need of the main form. Texts are UTF-8.
class MainScreen
{
public:
    virtual ~MainScreen() = default;
    virtual std::string text(Box box) const = 0;
    virtual std::string caption(Label label) const = 0;
    virtual void setCaption(Label label, const std::string& text) = 0;

    /// Which box a refusal of this click is about; of several, the last. It has the focus when the click is over.
    virtual void refusedAt(Box box) = 0;

    /// Empties `clearedBoxes` and all labels, and sets the tank volume to "0"; the gas and its gravity stay.
    virtual void modClearData() = 0;

    /// Whether "Prin&t" can be pressed.
    virtual void setPrintEnabled(bool enabled) = 0;

    void empty(std::span<const Label> labels)
    {
        for (const Label label : labels)
            setCaption(label, "");
    }

    /// Whether the last sizing has chosen a valve that passes the duty. The utilisation is shown last, and only then.
    bool hasValve() const { return !caption(Label::lblPercentValveCapacity).empty(); }
};

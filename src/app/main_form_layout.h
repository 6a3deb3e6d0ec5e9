#pragma once

#include "app/form_layout.h"

inline constexpr int mainFormWidth = 10620; // twips
inline constexpr int mainFormHeight = 6900;

// Right edges of the right-aligned captions: 120 twips before the box or value they caption.
inline constexpr int captionEdge = 6960;
inline constexpr int choiceCaptionEdge = 2040;

/// The main form in tab order, placed from the form's corner inside frames, too. A frame stands before its controls;
/// labels beside a box share its height, so that their texts stand on one line;
/// captions left empty are set when the form loads or by a sizing, and those of a pad valve may change when it loads.
inline constexpr ControlRow mainFormRows[] = {
    {"frmInput", Kind::boldFrame, nullptr, "Input Data", 0, 120, 10575, 3615},
    {"lblPumpRate", Kind::rightLabel, "frmInput", "Pump-&Out Rate", captionEdge, 2520, 0, 285},
    {"txtPumpRate", Kind::numericBox, "frmInput", "", 7080, 2520, 1335, 285},
    {"lblPressure", Kind::rightLabel, "frmInput", "Supply &Pressure of Blanketing Gas", captionEdge, 2880, 0, 285},
    {"txtPressure", Kind::numericBox, "frmInput", "", 7080, 2880, 1335, 285},
    {"lblTankVolume", Kind::rightLabel, "frmInput", "Tank &Volume:", captionEdge, 3240, 0, 285},
    {"txtTankVolume", Kind::numericBox, "frmInput", "", 7080, 3240, 1335, 285},
    {"lblBlanketingGas", Kind::rightLabel, "frmInput", "&Blanketing Gas:", captionEdge, 480, 0, 315},
    {"cmbBlanketingGas", Kind::comboBox, "frmInput", "", 7080, 480, 1335, 315},
    {"lblSpecGravlbl", Kind::rightLabel, "frmInput", "Specific &Gravity - Blanketing Gas", captionEdge, 840, 0, 285},
    {"txtSpecGrav", Kind::numericBox, "frmInput", "", 7080, 840, 1335, 285},
    {"lblBoilingPoint", Kind::rightLabel, "frmInput", "&Boiling Point of Stored Material:", captionEdge, 1200, 0, 285},
    {"txtBoilingPoint", Kind::numericBox, "frmInput", "", 7080, 1200, 1335, 285},
    {"lblFlashPoint", Kind::rightLabel, "frmInput", "&Flash Point of Stored Material:", captionEdge, 1560, 0, 285},
    {"txtFlashPoint", Kind::numericBox, "frmInput", "", 7080, 1560, 1335, 285},
    {"lblStoredMaterial", Kind::rightLabel, "frmInput", "&Material to be Stored (optional):", captionEdge, 1920, 0,
     285},
    {"txtStoredMaterial", Kind::textBox, "frmInput", "", 7080, 1920, 1335, 285},
    {"cmdCalcFlowRate", Kind::button, "frmInput", "&Select Valve Size", 1320, 2640, 1455, 495},
    {"cmdPrint", Kind::button, nullptr, "Prin&t", 240, 6120, 1335, 495},
    {"cmdClear", Kind::button, nullptr, "&Clear Current", 1800, 6120, 1335, 495},
    {"cmdNewCalc", Kind::button, nullptr, "Size &New Valve", 3360, 6120, 1335, 495},
    {"cmdExit", Kind::button, nullptr, "E&xit", 4920, 6120, 1335, 495},
    {"frmMoreData", Kind::boldFrame, nullptr, "Flow Rates", 0, 3840, 10575, 855},
    {"lblPRFlowLabel", Kind::label, "frmMoreData", "Pump-Rate Flow", 120, 4200},
    {"lblBRFlowLabel", Kind::label, "frmMoreData", "", 2400, 4200},
    {"lblTotalFlowLabel", Kind::label, "frmMoreData", "= Total Flow Rate", 5160, 4200},
    {"lblPRFlow", Kind::boldLabel, "frmMoreData", "", 1440, 4200},
    {"lblBRFlow", Kind::boldLabel, "frmMoreData", "", 4080, 4200},
    {"lblFlow1", Kind::label, "frmMoreData", "", 7800, 4200},
    {"lblCVlbl", Kind::label, nullptr, "Valve Coefficient:", 240, 5040},
    {"lblValveBodySizelbl", Kind::label, nullptr, "Valve Body Size:", 240, 5520},
    {"lblMaxValveCapacitylbl", Kind::label, nullptr, "Max Valve Capacity:", 2280, 5040},
    {"lblPercentValveCapacitylbl", Kind::label, nullptr, "Valve Capacity Utilized (%):", 2040, 5520},
    {"lblCV", Kind::label, nullptr, "", 1560, 5040},
    {"lblMaxValveCapacity", Kind::label, nullptr, "", 3840, 5040},
    {"lblValveBodySize", Kind::label, nullptr, "", 1560, 5520},
    {"lblPercentValveCapacity", Kind::label, nullptr, "", 4200, 5520},
    {"lblSGGas", Kind::boldLabel, "frmMoreData", "", 8640, 4200},
    {"lblSGGaslbl", Kind::label, "frmMoreData", "S.G.Gas.", 9600, 4200},
    {"frmComments", Kind::frame, nullptr, "Comments/Notes", 7320, 4920, 3255, 1695},
    {"lblComments", Kind::wrappedLabel, "frmComments", "", 7440, 5280, 2895, 1215},
    {"lblTotalFlow", Kind::boldLabel, "frmMoreData", "", 6600, 4200},
    {"lblValveModel", Kind::label, "frmInput", "", 2160, 960},
    {"lblValveModellbl", Kind::rightLabel, "frmInput", "Current Valve Model:", choiceCaptionEdge, 960},
    {"lblFlow2", Kind::label, nullptr, "", 4680, 5040},
    {"Label2", Kind::label, nullptr, "S.G.Gas.", 6480, 5040},
    {"lblSGGas2", Kind::label, nullptr, "", 5520, 5040},
    {"lblSizingMethodlbl", Kind::rightLabel, "frmInput", "Sizing Method:", choiceCaptionEdge, 1680},
    {"lblValveTypelbl", Kind::rightLabel, "frmInput", "Valve Type:", choiceCaptionEdge, 1320},
    {"lblValveType", Kind::label, "frmInput", "", 2160, 1320},
    {"lblSizingMethod", Kind::label, "frmInput", "", 2160, 1680},
    {"lblPressureUnits", Kind::label, "frmInput", "", 8520, 2880, 0, 285},
    {"lblTempUnits1", Kind::label, "frmInput", "(F)", 8520, 1200, 0, 285},
    {"lblVolumeUnits", Kind::label, "frmInput", "", 8520, 3240, 0, 285},
    {"lblPumpRateUnits", Kind::label, "frmInput", "", 8520, 2520, 0, 285},
    {"lblTempUnits2", Kind::label, "frmInput", "(F)", 8520, 1560, 0, 285},
    {"lblHFPLFP", Kind::label, "frmInput", "", 2160, 1920},
};

/// A control of the form by its name.
using MainControl = NamedRow<mainFormRows>;

/// Labels that stand in one line: one that outgrows its place pushes the next ones on.
inline constexpr MainControl flowRow[] = {"lblPRFlowLabel", "lblPRFlow",         "lblBRFlowLabel",
                                          "lblBRFlow",      "lblTotalFlowLabel", "lblTotalFlow",
                                          "lblFlow1",       "lblSGGas",          "lblSGGaslbl"};
inline constexpr MainControl capacityRow[] = {
    "lblCVlbl", "lblCV", "lblMaxValveCapacitylbl", "lblMaxValveCapacity", "lblFlow2", "lblSGGas2", "Label2"};
inline constexpr MainControl bodySizeRow[] = {"lblValveBodySizelbl", "lblValveBodySize", "lblPercentValveCapacitylbl",
                                              "lblPercentValveCapacity"};

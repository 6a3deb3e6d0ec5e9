#pragma once

#include "app/form_layout.h"

inline constexpr int setupFormWidth = 8415; // twips
inline constexpr int setupFormHeight = 5715;

/// The setup form in tab order; options are placed from their frame's corner.
inline constexpr ControlRow setupFormRows[] = {
    {"frmModel", Kind::frame, nullptr, "Valve Model", 240, 240, 1455, 1095},
    {"optSeries61", Kind::option, "frmModel", "Series 6&1", 240, 360, 1095, 255},
    {"optSeries63", Kind::option, "frmModel", "Series 6&3", 240, 720, 1095, 255},
    {"frmPadDepad", Kind::frame, nullptr, "Valve Type", 2040, 240, 1575, 1095},
    {"optPad", Kind::option, "frmPadDepad", "&Pad", 480, 360, 735, 255},
    {"optDepad", Kind::option, "frmPadDepad", "&Depad", 480, 720, 855, 255},
    {"frmDDAPI", Kind::frame, nullptr, "Sizing Method", 3960, 240, 2055, 1095},
    {"optDD", Kind::option, "frmDDAPI", "Di&rect Displacement", 120, 360, 1815, 255},
    {"optAPI2000", Kind::option, "frmDDAPI", "API-&2000", 120, 720, 1215, 255},
    {"frmUnits", Kind::frame, nullptr, "Units of Measure", 6360, 240, 1695, 1095},
    {"optUSUnits", Kind::option, "frmUnits", "&U.S. Units", 360, 360, 1095, 255},
    {"optMetricUnits", Kind::option, "frmUnits", "&Metric Units", 360, 720, 1215, 255},
    {"lblCustomerName", Kind::label, nullptr, "Customer &Name", 480, 2760, 1125, 195},
    {"txtCustomerName", Kind::textBox, nullptr, "", 1800, 2760, 2535, 285},
    {"lblCustomerLocation", Kind::label, nullptr, "Customer &Location", 360, 3120, 1320, 195},
    {"txtCustomerLocation", Kind::textBox, nullptr, "", 1800, 3120, 2535, 285},
    {"lblCustTagNo", Kind::label, nullptr, "&Tag Number", 720, 3480, 885, 195},
    {"txtCustTagNo", Kind::textBox, nullptr, "", 1800, 3480, 2535, 285},
    {"lblNotes", Kind::label, nullptr, "N&otes", 1200, 3840, 420, 195},
    {"txtNotes", Kind::textBox, nullptr, "", 1800, 3840, 2535, 285},
    {"lblORMRep", Kind::label, nullptr, "&ORM Representative", 240, 4200, 1440, 195},
    {"txtORMRep", Kind::textBox, nullptr, "", 1800, 4200, 2535, 285},
    {"lstPressure", Kind::list, nullptr, "", 5280, 1920, 2775, 450},
    {"lstFlow", Kind::list, nullptr, "", 5280, 2760, 2775, 255},
    {"lstTemp", Kind::list, nullptr, "", 5280, 3480, 2775, 255},
    {"lstVolume", Kind::list, nullptr, "", 5280, 4200, 2775, 255},
    {"cmdContinue", Kind::button, nullptr, "&Continue", 3960, 5040, 1215, 495},
    {"lblPressureUnits", Kind::label, nullptr, "Units of Pressure", 5280, 1680, 1200, 195},
    {"lblFlow", Kind::label, nullptr, "Units of Flow", 5280, 2520, 915, 195},
    {"lblTemp", Kind::label, nullptr, "Units of Temperature", 5280, 3240, 1485, 195},
    {"lblVolume", Kind::label, nullptr, "Units of Volume", 5280, 3960, 1110, 195},
    {"Label1", Kind::boldLabel, nullptr, "Customer Information (optional)", 1680, 2040, 2655, 195},
};

/// A control of the form by its name.
using SetupControl = NamedRow<setupFormRows>;

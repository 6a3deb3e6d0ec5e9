#pragma once

#include "base/main_screen.h"
#include "base/named_row.h"
#include "report/maker_texts.h"

#include <optional>

// The page of the sizing summary. Distances are in twips: 1440 to the inch, 20 to the point.

inline constexpr int summaryWidth = 10545;
inline constexpr int summaryHeight = 14670;

/// How a control stands on the page.
enum class Place
{
    picture,     ///< `text` names its file
    boxed,       ///< cut at its box
    boxedRight,  ///< ends at the right edge of its box
    fitted,      ///< starts at its left edge, as wide as its text
    fittedRight, ///< ends at its right edge, as wide as its text
    wrapped      ///< in several lines inside its box
};

enum class Type
{
    body,    ///< 9.75 pt
    bold,    ///< 9.75 pt
    heading, ///< 12 pt
    small    ///< 8.25 pt
};

/// One control of the summary.
struct SummaryRow
{
    const char* name;
    int left;
    int top;
    int width;
    int height;
    Place place;
    const char* text;                  ///< design text; the fill replaces that of the values and units
    std::optional<Box> shownWith = {}; ///< in the cases that ask for this box; without one, in every case
    Type type = Type::body;
};

/// In page order: top, then left.
inline constexpr SummaryRow summaryRows[] = {
    {"Image1", 600, 0, 3405, 1260, Place::picture, "maker_mark.jpg"},
    {"Image2", 4800, 0, 2265, 1245, Place::picture, "valve_on_tank.jpg"},
    {"Label3", 7800, 0, 1080, 225, Place::fitted, maker::postalBox},
    {"Label4", 7800, 240, 1260, 225, Place::fitted, maker::street},
    {"Label5", 7800, 480, 2730, 225, Place::fitted, maker::town},
    {"Label6", 7800, 720, 1965, 225, Place::fitted, maker::telephone},
    {"Label7", 7800, 960, 1380, 225, Place::fitted, maker::fax},
    {"Label8", 7800, 1200, 1935, 225, Place::fitted, maker::webAddress},
    {"lblEmaladdy", 7800, 1440, 2070, 225, Place::fitted, maker::email},
    {"Label1",
     3840,
     1680,
     3765,
     285,
     Place::fitted,
     "Halvor-ORM Tank Blanketing Version " SIZING_VERSION,
     {},
     Type::heading},
    {"Label2", 5280, 1920, 1440, 285, Place::fitted, "Sizing Summary", {}, Type::heading},
    {"Label9", 5280, 2280, 1500, 210, Place::fitted, maker::copyright, {}, Type::small},
    {"lblReportDatelbl", 4560, 2520, 1215, 255, Place::boxedRight, "Report Date:"},
    {"lblReportDate", 6000, 2520, 1335, 255, Place::boxed, ""},
    {"lblCustomerNamelbl", 4080, 2880, 1695, 195, Place::boxedRight, "Customer Name:"},
    {"lblCustomerName", 6000, 2880, 2640, 195, Place::boxed, ""},
    {"lblCustomerLocationlbl", 4080, 3120, 1695, 195, Place::boxedRight, "Location:"},
    {"lblCustomerLocation", 6000, 3120, 2640, 195, Place::boxed, ""},
    {"lblORMReplbl", 3840, 3360, 1935, 195, Place::boxedRight, "ORM Representative:"},
    {"lblORMRep", 6000, 3360, 2640, 195, Place::boxed, ""},
    {"lblCustTagNolbl", 3960, 3600, 1695, 195, Place::boxedRight, "Tag Number:"},
    {"lblCustTagNo", 6000, 3600, 2280, 195, Place::boxed, "tag no"},
    {"lblValveTypelbl", 4725, 3840, 960, 225, Place::fittedRight, "Valve Type:"},
    {"lblValveType", 6000, 3840, 915, 225, Place::fitted, "Valve Type"},
    {"lblSizingMethodlbl", 4470, 4080, 1215, 225, Place::fittedRight, "Sizing Method:"},
    {"lblSizingMethod", 6000, 4080, 1170, 225, Place::fitted, "Sizing Method"},
    {"lblDash", 7320, 4080, 60, 225, Place::fitted, "-", Box::txtFlashPoint},
    {"lblHighFlashBoil", 7440, 4080, 2175, 195, Place::boxed, "", Box::txtFlashPoint},
    {"lblValveModellbl", 4440, 4320, 1215, 195, Place::boxedRight, "Valve:"},
    {"lblValveModel", 6000, 4320, 960, 225, Place::fitted, "valve model"},
    {"lblNoteslbl", 3960, 4560, 1695, 195, Place::boxedRight, "Notes:"},
    {"lblNotes", 6000, 4560, 2640, 195, Place::boxed, ""},
    {"lblSpecGravlbl", 4380, 4920, 1305, 225, Place::fittedRight, "Specific Gravity:"},
    {"lblSpecGrav", 6120, 4920, 765, 225, Place::fitted, "SpecGrav"},
    {"lblBlanketingGaslbl", 4440, 5160, 1245, 225, Place::fittedRight, "Blanketing Gas:"},
    {"lblBlanketingGas", 6120, 5160, 1125, 225, Place::fitted, "blanketinggas"},
    {"lblMateriallbl", 3975, 5400, 1710, 225, Place::fittedRight, "Material to be stored:", Box::txtStoredMaterial},
    {"lblMaterial", 6120, 5400, 615, 225, Place::fitted, "material", Box::txtStoredMaterial},
    {"lblBPlbl", 3120, 5640, 2565, 225, Place::fittedRight, "Boiling Point of Stored Material:", Box::txtBoilingPoint},
    {"lblBP", 6120, 5640, 210, 225, Place::fitted, "bp", Box::txtBoilingPoint},
    {"lblBPUnits", 6960, 5640, 615, 225, Place::fitted, "bpunits", Box::txtBoilingPoint},
    {"lblFPlbl", 3255, 5880, 2430, 225, Place::fittedRight, "Flash Point of Stored Material:", Box::txtFlashPoint},
    {"lblFP", 6120, 5880, 165, 225, Place::fitted, "fp", Box::txtFlashPoint},
    {"lblFPUnits", 6960, 5880, 570, 225, Place::fitted, "fpunits", Box::txtFlashPoint},
    {"lblPumpRatelbl", 4785, 6120, 900, 225, Place::fittedRight, "Pump Rate:"},
    {"lblPumpRate", 6120, 6120, 795, 225, Place::fitted, "pump rate"},
    {"lblPumpRateUnits", 6960, 6120, 1245, 225, Place::fitted, "pump rate units"},
    {"lblPressurelbl", 4950, 6360, 735, 225, Place::fittedRight, "Pressure:"},
    {"lblPressure", 6120, 6360, 690, 225, Place::fitted, "pressure"},
    {"lblPressureUnits", 6960, 6360, 1140, 225, Place::fitted, "pressure units"},
    {"lblTankVolumelbl", 4590, 6600, 1095, 225, Place::fittedRight, "Tank Volume:", Box::txtTankVolume},
    {"lblTankVolume", 6120, 6600, 600, 225, Place::fitted, "tankvol", Box::txtTankVolume},
    {"lblVolumeUnits", 6960, 6600, 1035, 225, Place::fitted, "volume units", Box::txtTankVolume},
    {"lblValveBodySizelbl", 4275, 6960, 1335, 225, Place::fittedRight, "Valve Body Size:"},
    {"lblValveBodySize", 6120, 6960, 1245, 225, Place::fitted, "valve body size"},
    {"lblCVlbl", 3810, 7200, 1800, 225, Place::fittedRight, "Valve Coefficient (Cv):"},
    {"lblCV", 6120, 7200, 240, 225, Place::fitted, "CV"},
    {"lblTotalFlowlbl", 4305, 7440, 1305, 225, Place::fittedRight, "Total Flow Rate:"},
    {"lblTotalFlowRate", 6120, 7440, 1260, 225, Place::fitted, "Total Flow Rate"},
    {"lblTotalFlowUnits", 6720, 7440, 765, 225, Place::fitted, "TotalFlowUnits"},
    {"lblTotalFlowSG", 7560, 7440, 1035, 225, Place::fitted, "TotalFlowSG"},
    {"lblSGLabel1", 8520, 7440, 660, 225, Place::fitted, "S.G. Gas"},
    {"lblMaxValveCaplbl", 3975, 7680, 1635, 225, Place::fittedRight, "Max Valve Capacity:"},
    {"lblMaxValveCap", 6120, 7680, 1200, 225, Place::fitted, "Max Valve Cap"},
    {"lblMaxValveCapUnits", 6720, 7680, 825, 225, Place::fitted, "MaxValveCapUnits"},
    {"lblMaxFlowSG", 7560, 7680, 915, 225, Place::fitted, "MaxflowSG"},
    {"lblSGMaxFlow", 8520, 7680, 660, 225, Place::fitted, "S.G. Gas"},
    {"lblPercentValveCapacitylbl", 3720, 7920, 1890, 225, Place::fittedRight, "Valve Capacity Utilized:"},
    {"lblPercentValveCapacity", 6120, 7920, 975, 225, Place::fitted, "% valve cap"},
    {"lblPercentUnits", 6720, 7920, 1230, 225, Place::fitted, "lblPercentUnits"},
    {"lblCommentslbl", 2280, 8280, 870, 225, Place::fitted, "Comments", {}, Type::bold},
    {"lblComments", 3360, 8280, 4455, 615, Place::wrapped, ""},
};

/// A control of the summary by its name.
using SummaryControl = NamedRow<summaryRows>;

#pragma once

#include "gui/screens_fixture.h"

class MainFormTest : public ScreensTest
{
protected:
    /// Captions of the labels that an edit of an input empties, joined; all but the high/low point note.
    std::string results()
    {
        std::string text;
        for (const char* const label : {"lblPRFlow", "lblBRFlow", "lblTotalFlow", "lblSGGas", "lblCV",
                                        "lblValveBodySize", "lblMaxValveCapacity", "lblPercentValveCapacity"})
            text += shown(label);
        return text;
    }

    /// Half of the 1500 Nm3/h that Cv 3 passes at 50 mbar, or less.
    void sizeDepad()
    {
        for (const char* const box : {"txtPumpRate", "txtPressure", "txtTankVolume", "txtFlashPoint"})
            set(box, "50");
        press("cmdCalcFlowRate");
        ASSERT_EQ(shown("lblMaxValveCapacity"), "1500");
    }
};

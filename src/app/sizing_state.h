#pragma once

#include "base/offered.h"

#include <cstdint>
#include <string>

/// The one record of program-wide values through which the screens, the engine, the table lookups and the report talk.
/// One instance for the life of the process; never saved. Choices are held as their display texts and compared whole.
/// Flows are SCFH when `UnitSystem` is "US" and Nm3/Hr when it is "Metric".
struct SizingState
{
    // Status flags: raised by the routine that failed, lowered when the click has been handled.
    bool InputError = false;
    bool SizingError = false;

    // Entry and locale: the money decimal separator (empty when the query fails) and the characters it leads to.
    std::string DecSep;
    std::string ValidChars;

    // Setup choices, as base/offered.h names them.
    std::string UnitSystem = choice::us;
    std::string ValveType = choice::pad;
    std::string SizingMethod = choice::api2000;
    std::string SizingCase = sizing_case::padApi2000; ///< rebuilt by a sizing run, not by the options
    std::string ValveModel = choice::series61;
    std::string PressUnits;
    std::string FlowUnits;
    std::string VolUnits;
    std::string PumpRateUnits;
    std::string ValveTable; ///< name of the capacity table

    // Customer information, all optional; survives a return to the setup screen.
    std::string CustomerName;
    std::string CustomerLocation;
    std::string CustTagNo;
    std::string Notes;
    std::string Representative;

    // Main-screen entries, copied by the input checks.
    double SpecGrav = 0;      ///< air = 1
    double PumpRate = 0;      ///< in `PumpRateUnits`
    double InputPressure = 0; ///< supply (pad) or differential (depad) pressure, in `PressUnits`
    double TankVolume = 0;    ///< in `VolUnits`
    std::string BlanketingGas;
    std::string StoredMaterial;
    std::string BoilingPoint; ///< as entered, degF or degC; may be empty
    std::string FlashPoint;   ///< as entered, degF or degC; may be empty

    // Working values and results of a sizing run. Nothing resets them; the next run overwrites them.
    double PumpFlow = 0;
    double BreathingFlow = 0;
    double TotalFlow = 0;
    bool HighFlashBoil = false;
    double SpecGravRoot = 0;
    float GasFactor = 0;             ///< flow of the actual gas per flow of the capacity table
    std::int32_t ShownTotalFlow = 0; ///< the total flow as the main screen shows it
    float SelectedCv = 0;
    std::string CvText; ///< `SelectedCv` with "." as decimal point, for the capacity query
    std::string ValveBodySize;
    float MaxValveCap = 0; ///< capacity of the chosen valve for the actual gas
    float PercentCap = 0;  ///< `TotalFlow` / `MaxValveCap`, a fraction
    std::string Comments;
};

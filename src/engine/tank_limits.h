#pragma once

// Tank volumes at which the thermal breathing of API Standard 2000 is worked out in another way. The limits themselves
// belong to the smaller side.

// Up to here the flow is proportional to the volume; above, it comes from the large-tank table.
inline constexpr double smallTankGallons = 840000;
inline constexpr double smallTankCubicMeters = 3179;

// The ends of the venting tables: larger tanks have special requirements.
inline constexpr double largestTankGallons = 7560000;
inline constexpr double largestTankCubicMeters = 30000;

#pragma once

#include "tables/capacity_tables.h"

#include <optional>
#include <string>
#include <string_view>

/// Pascal per unit of pressure that is offered.
double pascalPer(std::string_view pressUnits);

double scfhPer(std::string_view unitSystem);    ///< per unit of flow
double gallonsPer(std::string_view unitSystem); ///< per unit of volume

/// The flow in a valve table's units by the equation of data/README.md, from the table's pressure to the atmosphere.
double computedFlow(const ValveTableSpec& table, double cv, double pressure);

/// By what a figure in the unit `given` is to be multiplied to be in the unit `wanted`; 1 for the same unit, nullopt
/// for a unit that is unknown or of another kind. The gas counts where a mass is given.
std::optional<double> factorTo(std::string_view given, std::string_view wanted, bool isNitrogen);
bool isUnit(std::string_view text); ///< as it stands, or in brackets

/// What makes flows wrong by `factor`, as a question such as "at 15 degC?"; "" for a factor that nothing usual gives.
/// The cause's own factor is at most `tolerance` (a share) away.
std::string likelyCause(const ValveTableSpec& table, double factor, double tolerance);

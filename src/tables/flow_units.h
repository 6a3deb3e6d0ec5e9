#pragma once

#include "tables/capacity_tables.h"

#include <optional>
#include <string>
#include <string_view>

/// Pascal per unit of pressure that is offered.
double pascalPer(std::string_view pressUnits);

double scfhPer(std::string_view unitSystem);    ///< per unit of flow
double gallonsPer(std::string_view unitSystem); ///< per unit of volume

/// The flow in a valve table's units by the equation of data/README.md, from the table's pressure
/// to the atmosphere.
double computedFlow(const ValveTableSpec& table, double cv, double pressure);

/// The factor from a figure in the unit `given` to the same in the unit `wanted`; nullopt for a
/// unit that is unknown or of another kind. For a mass flow it depends on the gas.
std::optional<double> factorTo(std::string_view given, std::string_view wanted, bool isNitrogen);
bool isUnit(std::string_view text); ///< a unit alone, or in brackets

/// The likely cause of flows that are wrong by `factor`, as a question such as "at 15 degC?"; ""
/// when no usual cause gives this factor within `tolerance`, a share of it.
std::string likelyCause(const ValveTableSpec& table, double factor, double tolerance);

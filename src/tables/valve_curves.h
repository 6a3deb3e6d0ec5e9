#pragma once

#include "tables/capacity_tables.h"

#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// The rows of one Cv by pressure, and of one valve table by Cv. At single precision, as a selected Cv is held.
using Curve = std::map<double, const CapacityRow*>;
using Curves = std::map<float, Curve>;

/// `column` at `where` on the straight line between the rows around it; nullopt beyond them.
template <typename Row>
std::optional<double> valueAt(const std::map<double, const Row*>& rows, double where, double Row::*column)
{
    const auto above = rows.lower_bound(where);
    if (above == rows.end())
        return std::nullopt;
    if (above->first == where)
        return above->second->*column;
    if (above == rows.begin())
        return std::nullopt;
    const auto below = std::prev(above);
    const double share = (above->first - where) / (above->first - below->first);
    return above->second->*column - share * (above->second->*column - below->second->*column);
}

std::optional<double> flowAt(const Curve& curve, double pressure);

/// How finely the figures of a column are given. Makers round by size: 12.45, 124.5 and 1245 may stand in one list.
class Rounding
{
public:
    void add(double value);

    /// The step between two neighbouring figures of about this size: 1 for whole numbers, 1000 for 11000 of two digits.
    double unit(double value) const;

private:
    struct Decade
    {
        std::size_t count = 0;
        int place = 0;          ///< the power of ten of the last digit that any figure is given to
        bool onlyHalves = true; ///< all end in 0 or 5 there
    };
    std::map<int, Decade> decades_; ///< by the power of ten of the first digit
};

/// Whether a row lies on the straight line between its neighbours, as rows do that `--complete` filled.
bool isOnLine(const Curve& curve, Curve::const_iterator row);

/// Whether the program finds the capacity of a Cv. It holds the Cv it selected at single precision and looks for the
/// number that this single's text reads as: at most seven digits, no exponent. 0 means "no valve".
bool isLookedUp(double cv);

/// The lowest pressure at which any model may have a valve of this Cv in this table.
double lowestPressureOf(const ValveTableSpec& table, float cv);

/// A Cv that the program steps up while a larger valve may pass. Between two rows it chooses a Cv for flows up to its
/// own in the upper row; stepped up, the valve passes what the next Cv of the series does, at the lower row the least.
/// A flow between the two is refused.
struct Step
{
    Curves::const_iterator chosen;
    float steppedTo; ///< the Cv itself, where the series has no next one
    double lowest;   ///< below this pressure no larger valve is allowed
};
std::vector<Step> stepsOf(const ValveTableSpec& table, const Curves& curves);

/// What the stepped valve passes at `pressure`; 0 where it has no rows.
double passedAfterStep(const Step& step, const Curves& curves, double pressure);

// Texts of findings.

/// `value` to four significant digits.
std::string roughly(double value);
std::string numeral(double value);
std::string cvText(float cv);           ///< as a person writes it
std::string lineText(std::size_t line); ///< " (line 7)" or " (filled)"

#pragma once

#include "tables/capacity_tables.h"

#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// The rows of one Cv by pressure, and the rows of a valve table by Cv. A Cv is a float, as a
/// selected Cv is.
using Curve = std::map<double, const CapacityRow*>;
using Curves = std::map<float, Curve>;

/// The value of `column` at `where`, on the straight line between the rows around it; nullopt
/// beyond the rows.
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

/// How finely the figures of a column are rounded. Makers round by size: 12.45, 124.5 and 1245 may
/// be in one list.
class Rounding
{
public:
    void add(double value);

    /// The step between two neighbouring figures of about this size: 1 for whole numbers, 1000 for
    /// 11000 with two digits.
    double unit(double value) const;

private:
    struct Decade
    {
        std::size_t count = 0;
        int place = 0;          ///< power of ten of the last digit that is not 0
        bool onlyHalves = true; ///< this digit is 0 or 5 in all figures
    };
    std::map<int, Decade> decades_; ///< by the power of ten of the first digit
};

/// Whether a row lies on the straight line between its neighbours, as the rows do that `--complete`
/// adds.
bool isOnLine(const Curve& curve, Curve::const_iterator row);

/// Whether the program finds the capacity of a Cv. It keeps a selected Cv as a float, and looks its
/// rows up by the text of this float: at most seven digits, no exponent. 0 means "no valve".
bool isLookedUp(double cv);

/// The lowest pressure at which any model may have a valve of this Cv in this table.
double lowestPressureOf(const ValveTableSpec& table, float cv);

/// A Cv that the program steps up although a larger valve might pass. Between two rows, the program
/// chooses a Cv for flows up to that of its upper row. Stepped up, the valve passes the flow of the
/// next Cv of the series, which is the least at the lower row. A flow between these two is refused.
struct Step
{
    Curves::const_iterator chosen;
    float steppedTo; ///< the Cv itself when the series has no next one
    double lowest;   ///< below this pressure no larger valve is allowed
};
std::vector<Step> stepsOf(const ValveTableSpec& table, const Curves& curves);

/// What the valve passes at `pressure` after the step; 0 where it has no rows.
double passedAfterStep(const Step& step, const Curves& curves, double pressure);

// Texts of findings.

/// `value` to four significant digits.
std::string roughly(double value);
std::string numeral(double value);
std::string cvText(float cv);           ///< as a person writes it
std::string lineText(std::size_t line); ///< " (line 7)" or " (filled)"

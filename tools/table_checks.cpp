#include "table_checks.h"

#include "base/number_text.h"
#include "base/offered.h"
#include "findings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <optional>
#include <set>

namespace
{

// What cannot be right.
constexpr Rule aboveZero{Severity::error, "a flow is above 0"};
constexpr Rule canBeLookedUp{Severity::error, "a Cv is 0.0001 or more and has at most seven digits"};
constexpr Rule rowOnce{Severity::error, "a Cv has one row for each pressure"};
constexpr Rule samePressures{Severity::error, "all Cvs of a table have the same pressures; --complete fills the rows "
                                              "between a Cv's own, those beyond them are for you to add"};
constexpr Rule risesWithPressure{Severity::error, "a flow does not fall as the pressure rises"};
constexpr Rule risesWithCv{Severity::error, "a flow rises with the Cv"};
constexpr Rule oneBodySize{Severity::error, "a Cv has one body size"};
constexpr Rule unitsAgree{Severity::error,
                          "the tables of a valve type agree within a factor of 2, whatever their units"};
constexpr Rule rangeMet{Severity::error, "a table has pressures that the program accepts"};
constexpr Rule pressuresMeet{Severity::error, "the tables of a valve type have pressures in common"};
constexpr Rule volumesAscend{Severity::error, "the volumes ascend from row to row"};
constexpr Rule volumesCovered{Severity::error, "the table covers the tanks that are looked up in it"};
constexpr Rule risesWithVolume{Severity::error, "a flow does not fall as the volume rises"};
constexpr Rule goesOn{Severity::error, "the table begins within a factor of 2 of the formula for smaller tanks"};
constexpr Rule highPointBreathesLess{Severity::error, "DepadHFP is not above Pad or DepadLFP"};

// What is only odd.
constexpr Rule stepsWithPressure{Severity::warning, "a flow rises with the pressure"};
constexpr Rule growsEvenly{Severity::warning,
                           "a flow grows at least like the fourth root of the pressure or volume and "
                           "at most like its power of 1.5"};
constexpr Rule nearEquation{Severity::warning,
                            "a flow is within a factor of 3 of the flow equation of data/README.md: look at the units"};
constexpr Rule goesOnClosely{Severity::warning, "the table begins within 10 % of the formula for smaller tanks"};
constexpr Rule volumesAgree{Severity::warning, "the large-tank tables agree within 10 %: a row may be missing"};
constexpr Rule bodySizeGrows{Severity::warning, "a body size does not shrink as the Cv grows"};
constexpr Rule rangeCovered{Severity::warning,
                            "the program accepts pressures beyond those of the table and refuses every "
                            "valve there"};
constexpr Rule inSeries{Severity::warning,
                        "the Cv is outside the series of its valve type: it is neither stepped up nor "
                        "stepped up to"};
constexpr Rule seriesComplete{Severity::warning, "the series of the valve type has a Cv without rows"};
constexpr Rule oneStepIsEnough{Severity::warning,
                               "flows that a valve passes are refused, because the program steps the Cv "
                               "up once only: add pressures in between"};

constexpr Rule filled{Severity::note, "on the straight line between the rows around them"};

/// The rows of one Cv by pressure, and of one valve table by Cv. At single precision, as a selected Cv is held.
using Curve = std::map<double, const CapacityRow*>;
using Curves = std::map<float, Curve>;

/// The rows of a large-tank table by volume.
using Volumes = std::map<double, const LargeTankRow*>;

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

std::optional<double> flowAt(const Curve& curve, double pressure)
{
    return valueAt(curve, pressure, &CapacityRow::flow);
}

/// `value` to four significant digits.
std::string roughly(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return shown(numberText(std::strtod(text, nullptr)));
}

/// By what factor one of two values above 0 is larger than the other.
double factorBetween(double one, double other)
{
    return std::max(one / other, other / one);
}

/// A number in a finding.
std::string numeral(double value)
{
    return shown(numberText(value));
}

std::string cvText(float cv) // as a person writes it
{
    return "CV " + NumberText().general(cv);
}

std::string lineText(std::size_t line)
{
    return line > 0 ? " (line " + std::to_string(line) + ')' : " (filled)";
}

/// Whether the program finds the capacity of a Cv. It holds the Cv it selected at single precision and looks for the
/// number that this single's text reads as: at most seven digits, no exponent. 0 means "no valve".
bool isLookedUp(double cv)
{
    const NumberText numbers;
    const float selected = cv > std::numeric_limits<float>::max() ? 0 : static_cast<float>(cv);
    return selected > 0 && numbers.parse(numbers.general(selected)) == cv;
}

/// Inches of a body size such as 1/2", 1 1/2", 1-1/2 in, 1½" or DN 50 (about); nullopt for any other text.
std::optional<double> inchesOf(std::string bodySize)
{
    for (const auto& [written, plain] :
         {std::pair{"½", " 1/2"}, {"¼", " 1/4"}, {"¾", " 3/4"}, {"-", " "}, {"in", "\""}})
        for (std::size_t at = 0; (at = bodySize.find(written, at)) != std::string::npos;)
            bodySize.replace(at, std::strlen(written), plain);
    double whole = 0;
    double over = 0;
    double under = 1;
    char mark = 0;
    const char* const text = bodySize.c_str();
    if (std::sscanf(text, "%lf %lf/%lf %c", &whole, &over, &under, &mark) == 4 && mark == '"')
        return whole + over / under;
    if (std::sscanf(text, "%lf/%lf %c", &over, &under, &mark) == 3 && mark == '"')
        return over / under;
    if (std::sscanf(text, "%lf %c", &whole, &mark) == 2 && mark == '"')
        return whole;
    if (std::sscanf(text, "DN%lf", &whole) == 1)
        return whole / 25;
    return std::nullopt;
}

/// A unit of the last digit that the flows of a table are given to: 1 where all are whole numbers.
template <typename Row>
double lastDigit(const Table<Row>& read, std::initializer_list<double Row::*> flows)
{
    std::size_t most = 0;
    for (const Row& row : read.rows)
        for (const auto flow : flows) {
            const std::string text = row.line > 0 ? numberText(row.*flow) : "0"; // a filled row is not rounded
            most = std::max(most, text.size() - std::min(text.find('.'), text.size() - 1) - 1);
        }
    return std::pow(10, -static_cast<double>(most));
}

/// Whether a flow grows from one row to the next as flows do. Two percent, or a unit of the last digit, may be
/// rounding.
bool isEven(double from, double flowFrom, double to, double flowTo, double digit)
{
    if (from <= 0)
        return true;
    const double ratio = to / from;
    return 1.02 * flowTo + digit >= flowFrom * std::pow(ratio, 0.25) &&
           flowTo <= 1.02 * flowFrom * std::pow(ratio, 1.5) + digit;
}

struct PressureUnit
{
    std::string_view name;
    double pascal;
};
constexpr PressureUnit pressureUnits[] = {
    {"PSI", 6894.757}, {"kg/cm2", 98066.5}, {"kPa", 1000}, {"in wc", 249.08891}, {"mbar", 100},
};

constexpr const PressureUnit* findUnit(std::string_view name)
{
    return std::ranges::find(pressureUnits, name, &PressureUnit::name);
}
static_assert(std::ranges::all_of(offers,
                                  [](const Offer& offer) {
                                      return findUnit(offer.pressUnits) != std::end(pressureUnits);
                                  }),
              "a pressure unit that is offered has a row above");

double scfhPer(std::string_view unitSystem)
{
    return unitSystem == choice::us ? 1 : 1 / 0.026793; // from Nm3/h: 60 degF and 14.696 psia against 0 degC
}

double gallonsPer(std::string_view unitSystem)
{
    return unitSystem == choice::us ? 1 : 1 / 0.003785411784;
}

/// The flow in a valve table's units by the equation of data/README.md, from the table's pressure to the atmosphere.
double computedFlow(const ValveTableSpec& table, double cv, double pressure)
{
    constexpr double atmosphere = 14.696;  // psia
    constexpr double temperature = 519.67; // degR: 60 degF
    constexpr double factor = 1360;        // SCFH for Cv, psia and degR
    constexpr double choked = 0.72;        // share of the inlet pressure beyond which a larger drop adds nothing
    const double gravity = table.valveType == choice::pad ? 0.97 : 1; // the tables are for nitrogen and air
    const double drop = pressure * findUnit(table.pressUnits)->pascal / findUnit("PSI")->pascal;
    const double inlet = atmosphere + drop;
    const double share = std::min(drop / inlet, choked);
    return factor * cv * inlet * (1 - share / (3 * choked)) * std::sqrt(share / (gravity * temperature)) /
           scfhPer(table.unitSystem);
}

/// Checks one valve table.
class ValveTableCheck
{
public:
    ValveTableCheck(const ValveTableSpec& table, const Table<CapacityRow>& read, Findings& findings)
        : table_(table), read_(read), findings_(findings), lastDigit_(lastDigit(read, {&CapacityRow::flow}))
    {
    }

    /// Gives the rows by Cv and pressure.
    Curves run()
    {
        checkRows();
        if (read_.isWhole && !curves_.empty()) {
            checkPressures();
            checkRange();
            checkEquation();
            for (const auto& [cv, curve] : curves_)
                checkCurve(cv, curve);
            for (auto cv = curves_.begin(); std::next(cv) != curves_.end(); ++cv)
                compare(*cv, *std::next(cv));
            checkSeries();
        }
        return std::move(curves_);
    }

private:
    void report(const Rule& rule, std::size_t line, const std::string& found) const
    {
        findings_.report(rule, read_.source, line, line > 0 ? found : found + " (filled)");
    }

    std::string at(double pressure) const
    {
        return " at Pressure " + numeral(pressure) + ' ' + std::string(table_.pressUnits);
    }

    void checkRows()
    {
        for (const CapacityRow& row : read_.rows) {
            if (row.flow <= 0)
                report(aboveZero, row.line, "flow " + numeral(row.flow));
            if (!isLookedUp(row.cv)) {
                report(canBeLookedUp, row.line, "CV " + numeral(row.cv));
                continue;
            }
            const auto cv = static_cast<float>(row.cv);
            const auto [same, added] = curves_[cv].emplace(row.pressure, &row);
            if (!added)
                report(rowOnce, row.line,
                       cvText(cv) + at(row.pressure) + " has a row already" + lineText(same->second->line));
        }
    }

    /// The table has gaps where it has not the same pressures for all Cvs: the program takes the first row at or above
    /// the duty's pressure, whatever its Cv.
    void checkPressures()
    {
        Curve all; // the first row of each pressure
        for (const auto& [cv, curve] : curves_)
            all.insert(curve.begin(), curve.end());
        for (const auto& [cv, curve] : curves_) {
            if (curve.size() == all.size())
                continue;
            isGrid_ = false;
            const std::size_t count = all.size() - curve.size();
            std::string missing;
            std::size_t named = 0;
            for (auto other = all.begin(); named < std::min<std::size_t>(count, 5); ++other)
                if (!curve.contains(other->first))
                    missing += (++named > 1 ? ", " : "") + numeral(other->first) + lineText(other->second->line);
            if (count > named)
                missing += " and " + std::to_string(count - named) + " more";
            report(samePressures, curve.begin()->second->line,
                   cvText(cv) + " has no row for Pressure " + missing + ", which other Cvs have");
        }
    }

    void checkRange() const
    {
        const auto byFirst = [](const auto& one) { return one.second.begin()->first; };
        const auto byLast = [](const auto& one) { return one.second.rbegin()->first; };
        const CapacityRow* lowest = std::ranges::max_element(curves_, {}, byFirst)->second.begin()->second;
        const CapacityRow* highest = std::ranges::min_element(curves_, {}, byLast)->second.rbegin()->second;
        const std::string units = ' ' + std::string(table_.pressUnits);
        if (lowest->pressure > table_.highest || highest->pressure < table_.lowest) {
            report(rangeMet, lowest->line,
                   "Pressure goes from " + numeral(lowest->pressure) + " to " + numeral(highest->pressure) +
                       ", the range from " + numeral(table_.lowest) + " to " + numeral(table_.highest) + units);
            return;
        }
        if (lowest->pressure > table_.lowest)
            report(rangeCovered, lowest->line,
                   "Pressure begins at " + numeral(lowest->pressure) + ", above " + numeral(table_.lowest) + units);
        if (highest->pressure < table_.highest)
            report(rangeCovered, highest->line,
                   "Pressure ends at " + numeral(highest->pressure) + ", below " + numeral(table_.highest) + units);
    }

    /// A scale that all tables have in common shows nowhere else.
    void checkEquation() const
    {
        constexpr double most = 3;
        double widest = most;
        std::size_t count = 0;
        std::string where;
        std::size_t line = 0;
        for (const auto& [cv, curve] : curves_)
            for (const auto& [pressure, row] : curve) {
                if (pressure <= 0 || row->flow <= 0)
                    continue;
                const double computed = computedFlow(table_, row->cv, pressure);
                const double factor = factorBetween(row->flow, computed);
                count += factor > most;
                if (factor <= widest)
                    continue;
                widest = factor;
                line = row->line;
                where = "flow " + numeral(row->flow) + at(pressure) + ", " + cvText(cv) +
                        ", where the equation gives about " + roughly(computed) + ", a factor of " + roughly(factor);
            }
        if (count > 0)
            report(nearEquation, line,
                   std::to_string(count) + " of " + std::to_string(read_.rows.size()) + " rows, the worst: " + where);
    }

    void checkCurve(float cv, const Curve& curve) const
    {
        const CapacityRow* before = nullptr;
        for (const auto& [pressure, row] : curve) {
            if (row->bodySize != curve.begin()->second->bodySize)
                report(oneBodySize, row->line,
                       "Bodysize " + shown(row->bodySize) + " of " + cvText(cv) + ", which is " +
                           shown(curve.begin()->second->bodySize) + " elsewhere" +
                           lineText(curve.begin()->second->line));
            if (before != nullptr) {
                const Rule* const rule = row->flow < before->flow    ? &risesWithPressure
                                         : row->flow == before->flow ? &stepsWithPressure
                                         : !isEven(before->pressure, before->flow, pressure, row->flow, lastDigit_)
                                             ? &growsEvenly
                                             : nullptr;
                if (rule != nullptr)
                    report(*rule, row->line,
                           "flow " + numeral(row->flow) + at(pressure) + ", " + cvText(cv) + ", after " +
                               numeral(before->flow) + at(before->pressure) + lineText(before->line));
            }
            before = row;
        }
    }

    void compare(const Curves::value_type& smaller, const Curves::value_type& larger) const
    {
        for (const auto& [pressure, row] : larger.second) {
            const auto beside = smaller.second.find(pressure);
            if (beside != smaller.second.end() && row->flow <= beside->second->flow)
                report(risesWithCv, row->line,
                       "flow " + numeral(row->flow) + at(pressure) + ", " + cvText(larger.first) + ", beside " +
                           numeral(beside->second->flow) + " of " + cvText(smaller.first) +
                           lineText(beside->second->line));
        }
        const CapacityRow& small = *smaller.second.begin()->second;
        const CapacityRow& large = *larger.second.begin()->second;
        const auto smallInches = inchesOf(small.bodySize);
        const auto largeInches = inchesOf(large.bodySize);
        if (smallInches && largeInches && *largeInches < *smallInches)
            report(bodySizeGrows, large.line,
                   "Bodysize " + shown(large.bodySize) + " of " + cvText(larger.first) + " after " +
                       shown(small.bodySize) + " of " + cvText(smaller.first) + lineText(small.line));
    }

    void checkSeries() const
    {
        for (const auto& [cv, curve] : curves_)
            if (std::ranges::find(table_.cvSeries, cv) == table_.cvSeries.end())
                report(inSeries, curve.begin()->second->line, cvText(cv));
        for (const float cv : table_.cvSeries)
            if (!curves_.contains(cv))
                report(seriesComplete, 1, cvText(cv));
        if (isGrid_)
            checkSteps();
    }

    /// The lowest pressure at which any model may have a valve of this Cv.
    double lowestFor(float cv) const
    {
        double lowest = table_.highest;
        for (const Offer& offer : offers)
            if (offer.valveTable == table_.name)
                lowest = std::min(lowest, cv > offer.minimum.exemptUpToCv ? std::max(offer.lowest, offer.minimum.lowest)
                                                                          : offer.lowest);
        return lowest;
    }

    /// Where one step of the Cv does not reach the next valve that passes. Above a row's pressure the next row counts,
    /// so a Cv is chosen for flows up to its own there; stepped up, it passes a little more than the next Cv does at
    /// the row below. A flow between the two is refused.
    void checkSteps() const
    {
        std::size_t count = 0;
        double widest = 0;
        std::string where;
        std::size_t line = 0;
        for (auto chosen = curves_.begin(); chosen != curves_.end(); ++chosen) {
            const auto place = std::ranges::find(table_.cvSeries, chosen->first);
            const bool isStepped = place != table_.cvSeries.end() && std::next(place) != table_.cvSeries.end();
            const float steppedTo = isStepped ? *std::next(place) : chosen->first;
            const auto passing = curves_.upper_bound(steppedTo); // a valve that would do
            if (passing == curves_.end())
                continue; // a Cv outside the series may follow
            const double lowest = lowestFor(passing->first);
            const auto stepped = curves_.find(steppedTo);
            for (auto below = chosen->second.begin(); std::next(below) != chosen->second.end(); ++below) {
                const CapacityRow& above = *std::next(below)->second;
                if (above.pressure <= lowest || below->first >= table_.highest)
                    continue;
                const double from = std::max(below->first, lowest);
                const double reached = stepped == curves_.end() ? 0 : *flowAt(stepped->second, from); // 0: no rows
                if (reached >= above.flow)
                    continue;
                ++count;
                if (above.flow - reached > widest * above.flow) {
                    widest = (above.flow - reached) / above.flow;
                    line = above.line;
                    where = "just above Pressure " + numeral(from) + ", " + cvText(chosen->first) +
                            " is chosen for flows below " + numeral(above.flow) + lineText(above.line) +
                            (isStepped ? " and stepped to " + cvText(steppedTo) : " and not stepped up") +
                            ", which passes " + numeral(reached) + " there";
                }
            }
        }
        if (count > 0)
            report(oneStepIsEnough, line,
                   std::to_string(count) + (count == 1 ? " place" : " places, the widest") + ": " + where);
    }

    const ValveTableSpec& table_;
    const Table<CapacityRow>& read_;
    Findings& findings_;
    double lastDigit_;
    Curves curves_;
    bool isGrid_ = true;
};

/// A valve table that was checked.
struct CheckedValves
{
    ValveTableSpec table;
    Curves curves;
    std::string source;
};

/// The ends of a table's pressures.
std::pair<double, double> endsOf(const Curves& curves)
{
    std::pair<double, double> ends{std::numeric_limits<double>::max(), 0};
    for (const auto& [cv, curve] : curves)
        ends = {std::min(ends.first, curve.begin()->first), std::max(ends.second, curve.rbegin()->first)};
    return ends;
}

/// Compares a table with the first one of its valve type.
void compareUnits(const CheckedValves& checked, const CheckedValves& first, Findings& findings)
{
    const ValveTableSpec& table = checked.table;
    const double pressureUnit = findUnit(table.pressUnits)->pascal / findUnit(first.table.pressUnits)->pascal;
    const double flowUnit = scfhPer(table.unitSystem) / scfhPer(first.table.unitSystem);
    const auto [lowest, highest] = endsOf(checked.curves);
    const auto [firstLowest, firstHighest] = endsOf(first.curves);
    if (lowest * pressureUnit > firstHighest || highest * pressureUnit < firstLowest)
        findings.report(pressuresMeet, checked.source, 0,
                        "Pressure goes from " + numeral(lowest) + " to " + numeral(highest) + ' ' +
                            std::string(table.pressUnits) + ", in " + std::string(first.table.name) + " from about " +
                            roughly(firstLowest / pressureUnit) + " to " + roughly(firstHighest / pressureUnit));
    for (const auto& [cv, curve] : checked.curves) {
        const auto same = first.curves.find(cv);
        if (same == first.curves.end())
            continue;
        for (const auto& [pressure, row] : curve) {
            const auto expected = flowAt(same->second, pressure * pressureUnit);
            if (expected && factorBetween(row->flow * flowUnit, *expected) > 2)
                findings.report(unitsAgree, checked.source, row->line,
                                "flow " + numeral(row->flow) + " at Pressure " + numeral(pressure) + ' ' +
                                    std::string(table.pressUnits) + ", " + cvText(cv) + ", where " +
                                    std::string(first.table.name) + " has about " + roughly(*expected / flowUnit) +
                                    " and the flow equation " + roughly(computedFlow(table, cv, pressure)));
        }
    }
}

constexpr auto tankFlows = std::span(largeTankColumns).subspan<1>();

double LargeTankRow::*flowOf(const Column<LargeTankRow>& column)
{
    return std::get<double LargeTankRow::*>(column.member);
}

std::string at(const LargeTankRow& row, const Column<LargeTankRow>& column)
{
    return std::string(column.name) + ' ' + numeral(row.*flowOf(column)) + " at TankVol " + numeral(row.tankVol);
}

/// Checks each row of a large-tank table, and what lies between it and the one before.
void checkLargeTankRows(const Table<LargeTankRow>& read, Findings& findings)
{
    const double digit = lastDigit(read, {&LargeTankRow::pad, &LargeTankRow::depadHfp, &LargeTankRow::depadLfp});
    const auto report = [&](const Rule& rule, const LargeTankRow& row, const std::string& found) {
        findings.report(rule, read.source, row.line, found);
    };
    const LargeTankRow* before = nullptr;
    for (const LargeTankRow& row : read.rows) {
        if (before != nullptr && row.tankVol <= before->tankVol)
            report(volumesAscend, row, "TankVol " + numeral(row.tankVol) + " after " + numeral(before->tankVol));
        for (const Column<LargeTankRow>& column : tankFlows) {
            const auto flow = flowOf(column);
            if (row.*flow <= 0)
                report(aboveZero, row, std::string(column.name) + ' ' + numeral(row.*flow));
            if (before == nullptr || row.tankVol <= before->tankVol)
                continue;
            const Rule* const rule = row.*flow < before->*flow ? &risesWithVolume
                                     : !isEven(before->tankVol, before->*flow, row.tankVol, row.*flow, digit)
                                         ? &growsEvenly
                                         : nullptr;
            if (rule != nullptr)
                report(*rule, row, at(row, column) + ", after " + numeral(before->*flow) + lineText(before->line));
        }
        if (row.depadHfp > row.pad || row.depadHfp > row.depadLfp)
            report(highPointBreathesLess, row,
                   "DepadHFP " + numeral(row.depadHfp) + " beside Pad " + numeral(row.pad) + " and DepadLFP " +
                       numeral(row.depadLfp));
        before = &row;
    }
}

/// Checks where a large-tank table begins and ends.
void checkLargeTankEnds(const LargeTankTableSpec& table, const Table<LargeTankRow>& read, const Volumes& rows,
                        Findings& findings)
{
    const std::string units = ' ' + std::string(table.volUnits);
    const auto [first, last] = std::pair(rows.begin()->second, rows.rbegin()->second);
    if (first->tankVol > table.lowest)
        findings.report(volumesCovered, read.source, first->line,
                        "TankVol starts at " + numeral(first->tankVol) + ", above " + numeral(table.lowest) + units);
    if (last->tankVol < table.highest)
        findings.report(volumesCovered, read.source, last->line,
                        "TankVol ends at " + numeral(last->tankVol) + ", below " + numeral(table.highest) + units);
    for (const Column<LargeTankRow>& column : tankFlows) {
        const auto flow = valueAt(rows, table.lowest, flowOf(column));
        const double formula =
            table.lowest * (flowOf(column) == &LargeTankRow::depadHfp ? table.thermalHigh : table.thermal);
        const double factor = flow ? factorBetween(*flow, formula) : 1;
        if (factor > 1.1)
            findings.report(factor > 2 ? goesOn : goesOnClosely, read.source,
                            rows.lower_bound(table.lowest)->second->line,
                            std::string(column.name) + ' ' + roughly(*flow) + " at TankVol " + numeral(table.lowest) +
                                units + ", where the formula gives " + roughly(formula));
    }
}

/// A large-tank table that was checked.
struct CheckedTanks
{
    LargeTankTableSpec table;
    Volumes rows;
    std::string source;
};

/// Compares the rows of one large-tank table with what the program makes of the other one.
void compareLargeTanks(const CheckedTanks& checked, const CheckedTanks& other, Findings& findings)
{
    const double volumeUnit = gallonsPer(checked.table.unitSystem) / gallonsPer(other.table.unitSystem);
    const double flowUnit = scfhPer(checked.table.unitSystem) / scfhPer(other.table.unitSystem);
    for (const auto& [volume, row] : checked.rows)
        for (const Column<LargeTankRow>& column : tankFlows) {
            const auto expected = valueAt(other.rows, volume * volumeUnit, flowOf(column));
            const double factor = expected ? factorBetween(row->*flowOf(column) * flowUnit, *expected) : 1;
            if (factor > 1.1)
                findings.report(factor > 2 ? unitsAgree : volumesAgree, checked.source, row->line,
                                at(*row, column) + ", where " + std::string(other.table.name) + " has about " +
                                    roughly(*expected / flowUnit));
        }
}

void checkLargeTankTables(const CapacityTables& tables, Findings& findings)
{
    std::vector<CheckedTanks> checked;
    for (const LargeTankTableSpec& table : largeTankTableSpecs) {
        const Table<LargeTankRow>& read = tables.largeTanks.at(std::string(table.name));
        checkLargeTankRows(read, findings);
        Volumes rows;
        for (const LargeTankRow& row : read.rows)
            rows.emplace(row.tankVol, &row);
        if (!read.isWhole || rows.empty())
            continue;
        checkLargeTankEnds(table, read, rows, findings);
        checked.push_back({table, std::move(rows), read.source});
    }
    if (checked.size() == largeTankTableSpecs.size()) {
        compareLargeTanks(checked[1], checked[0], findings);
        compareLargeTanks(checked[0], checked[1], findings);
    }
}

/// Fills the rows that the Cvs of one table lack.
void completeTable(const ValveTableSpec& table, Table<CapacityRow>& read, Findings& findings)
{
    Curves curves;
    std::set<double> pressures;
    for (const CapacityRow& row : read.rows)
        if (isLookedUp(row.cv)) { // any other is refused later, and may have no single
            curves[static_cast<float>(row.cv)].emplace(row.pressure, &row);
            pressures.insert(row.pressure);
        }
    if (curves.size() * pressures.size() > mostRows) {
        findings.report(notTooLarge, read.source, 0,
                        std::to_string(curves.size()) + " Cvs at " + std::to_string(pressures.size()) + " pressures");
        read.isWhole = false;
        return;
    }
    std::vector<CapacityRow> added;
    for (const auto& [cv, curve] : curves) {
        std::size_t count = 0;
        for (const double pressure : pressures) {
            const auto flow = flowAt(curve, pressure);
            if (!flow || curve.contains(pressure))
                continue;
            const CapacityRow& above = *curve.lower_bound(pressure)->second;
            added.push_back({0, pressure, *flow, above.bodySize, above.cv});
            ++count;
        }
        if (count > 0)
            findings.report(filled, read.source, 0,
                            cvText(cv) + ": " + std::to_string(count) + (count == 1 ? " row" : " rows") +
                                " filled, the pressures in " + std::string(table.pressUnits));
    }
    read.rows.insert(read.rows.end(), added.begin(), added.end());
}

} // namespace

void completeTables(CapacityTables& tables, Findings& findings)
{
    for (const ValveTableSpec& table : valveTableSpecs())
        if (Table<CapacityRow>& read = tables.valves.at(std::string(table.name)); read.isWhole)
            completeTable(table, read, findings);
}

void checkTables(const CapacityTables& tables, Findings& findings)
{
    std::map<std::string_view, CheckedValves> firstOfType;
    for (const ValveTableSpec& table : valveTableSpecs()) {
        const Table<CapacityRow>& read = tables.valves.at(std::string(table.name));
        CheckedValves checked{table, ValveTableCheck(table, read, findings).run(), read.source};
        if (!read.isWhole || checked.curves.empty())
            continue;
        const auto [first, isFirst] = firstOfType.try_emplace(table.valveType, checked);
        if (!isFirst)
            compareUnits(checked, first->second, findings);
    }
    checkLargeTankTables(tables, findings);
}

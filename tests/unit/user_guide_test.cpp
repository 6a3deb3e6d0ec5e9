#include "base/checked_math.h"
#include "capacity/cv_series.h"
#include "capacity/valve_selection.h"
#include "engine/input_checks.h"
#include "engine/tank_limits.h"
#include "support/guide_figures.h"
#include "tables/capacity_tables.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

// The guide's chapter "How a valve is found" says how to work a duty by hand. Each figure in it is worked out here by
// the program, on the nominal tables: text and program cannot part.

namespace
{

std::string guide()
{
    std::ifstream in(SIZING_USER_GUIDE, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Of a pump rate and a tank volume of 1: the flows are the factors.
SizingState factors(const char* type, const char* pressUnits, double flashPoint = 0)
{
    return Duty(choice::series63, type, choice::api2000, pressUnits,
                {{Box::txtPumpRate, 1},
                 {Box::txtTankVolume, 1},
                 {Box::txtPressure, 1},
                 {Box::txtFlashPoint, flashPoint}})
        .state;
}

/// The figure from which on something holds, to five decimals.
template <typename Holds>
double firstWhere(double below, double above, Holds holds)
{
    while (above - below > 1e-6)
        (holds((below + above) / 2) ? above : below) = (below + above) / 2;
    return std::round(above * 1e5) / 1e5;
}

double highFrom(Box box, const std::string& pressUnits)
{
    return firstWhere(1, 1000, [&](double point) {
        Duty duty(choice::series63, choice::depad, choice::api2000, pressUnits,
                  {{Box::txtPumpRate, 1}, {Box::txtPressure, 20}, {Box::txtTankVolume, 1}, {box, point}});
        return duty.state.HighFlashBoil;
    });
}

/// The share of the smallest valve, in percent, from which on the caption begins, or no longer begins, with `words`.
double shareWhere(const char* type, Label label, const std::string& words, bool begins)
{
    const bool pad = type == std::string(choice::pad);
    const auto sized = [&](double pumpRate) {
        return Duty(choice::series63, type, choice::directDisplacement, pad ? "PSI" : "in wc",
                    {{Box::txtPumpRate, pumpRate}, {Box::txtPressure, 40}});
    };
    const double capacity = static_cast<double>(sized(1).state.MaxValveCap);
    return firstWhere(0.1, 99, [&](double percent) {
        return sized(percent / 100 * capacity / 8).screen.caption(label).starts_with(words) == begins;
    });
}

float gasFactor(const char* type, double gravity)
{
    return Duty(choice::series63, type, choice::directDisplacement, "PSI",
                {{Box::txtPumpRate, 1}, {Box::txtPressure, 25}, {Box::txtSpecGrav, gravity}})
        .state.GasFactor;
}

/// k of the gas factor, by a gravity at which two decimals keep all of its digits.
double rootOfTables(const char* type)
{
    return static_cast<double>(gasFactor(type, 0.0001)) / 100;
}

/// Of each pressure unit that a model is offered in.
std::string pressures(const char* model, const char* type, std::string (*figuresOf)(const Offer&))
{
    std::string all;
    for (const Offer& offer : offers)
        if (offer.valveModel == std::string(model) && offer.valveType == std::string(type))
            all += (all.empty() ? "" : " ") + figuresOf(offer);
    return all;
}

std::string range(const Offer& offer)
{
    return figures(offer.lowest, offer.highest);
}

std::string least(const Offer& offer)
{
    return text(offer.minimum.lowest);
}

std::string series(const char* type)
{
    std::string all;
    for (const float cv : cvSeries(type))
        all += (all.empty() ? "" : " ") + text(cv);
    return all;
}

/// A US pad duty by Direct Displacement with this total flow.
Duty ofFlow(double flow)
{
    return Duty(choice::series61, choice::pad, choice::directDisplacement, "PSI",
                {{Box::txtPumpRate, flow / 8}, {Box::txtPressure, 60}});
}

std::string shown(double flow)
{
    return figures(flow, ofFlow(flow).screen.caption(Label::lblTotalFlow));
}

std::string readBack(double flow)
{
    return figures(flow, double(ofFlow(flow).state.ShownTotalFlow));
}

struct Row
{
    std::string begin;
    std::string figures;
};

/// The pressures of each model and type.
std::vector<Row> pressureRows()
{
    std::vector<Row> ranges;
    std::vector<Row> leasts;
    std::string unadvised = "| No advice of less pressure up to:";
    std::string upTo;
    for (const Model& model : models) {
        const std::string name = model.name;
        const bool isDepad = isOffered(name, choice::depad);
        ranges.push_back({"| Pressure: " + name + (isDepad ? ", pad" : ""), pressures(model.name, choice::pad, range)});
        if (isDepad)
            ranges.push_back({"| Pressure: " + name + ", depad", pressures(model.name, choice::depad, range)});
        const MinimumPressure& minimum =
            std::ranges::find_if(offers, [&](const Offer& offer) { return offer.valveModel == name; })->minimum;
        if (minimum.message != nullptr)
            leasts.push_back(
                {"| Least pressure: " + name, (minimum.exemptUpToCv > 0 ? text(minimum.exemptUpToCv) + " " : "") +
                                                  pressures(model.name, choice::pad, least)});
        unadvised += (upTo.empty() ? " " : "; ") + name;
        upTo += (upTo.empty() ? "" : " ") + text(model.lowestPressure);
    }
    ranges.insert(ranges.end(), leasts.begin(), leasts.end());
    ranges.push_back({unadvised, upTo});
    return ranges;
}

std::vector<Row> constants()
{
    const SizingState padUs = factors(choice::pad, "PSI");
    const SizingState padMetric = factors(choice::pad, "kPa");
    const SizingState lowUs = factors(choice::depad, "PSI");
    const SizingState lowMetric = factors(choice::depad, "mbar");
    const SizingState highUs = factors(choice::depad, "PSI", 999);
    const SizingState highMetric = factors(choice::depad, "mbar", 999);
    const auto seven = [](double value) { return text(static_cast<float>(value)); };
    const auto perUnit = [&](double us, double metric) { return seven(us) + " " + seven(metric); };
    Duty halves(choice::series63, choice::depad, choice::api2000, "mbar",
                {{Box::txtPumpRate, 50}, {Box::txtPressure, 50}, {Box::txtTankVolume, 500}, {Box::txtFlashPoint, 60}});
    const auto held = static_cast<double>(gasFactor(choice::depad, 1.5625));
    const std::vector<Row> ofModels = pressureRows();
    constexpr Label advice = Label::lblComments;
    constexpr Label percent = Label::lblPercentValveCapacity;

    EXPECT_EQ(perUnit(padUs.BreathingFlow, padMetric.BreathingFlow),
              perUnit(lowUs.BreathingFlow, lowMetric.BreathingFlow));
    std::vector<Row> rows = {
        {"| Pump flow: pad; Direct", perUnit(padUs.PumpFlow, padMetric.PumpFlow)},
        {"| Pump flow: depad API-2000, high", perUnit(highUs.PumpFlow, highMetric.PumpFlow)},
        {"| Pump flow: depad API-2000, low", perUnit(lowUs.PumpFlow, lowMetric.PumpFlow)},
        {"| Breathing flow: pad; depad, low", "1 " + perUnit(1 / lowUs.BreathingFlow, lowMetric.BreathingFlow)},
        {"| Breathing flow: depad, high", perUnit(highUs.BreathingFlow, highMetric.BreathingFlow)},
        {"| Flash point", figures(highFrom(Box::txtFlashPoint, "in wc"), highFrom(Box::txtFlashPoint, "mbar"))},
        {"| Boiling point", figures(highFrom(Box::txtBoilingPoint, "in wc"), highFrom(Box::txtBoilingPoint, "mbar"))},
        {"| Large-tank limit", figures(smallTankGallons, smallTankCubicMeters)},
        {"| Largest tank", figures(largestTankGallons, largestTankCubicMeters)},
        {"| Largest pump rate", figures(largestPumpRate, largestPumpRate)},
        {"| k: pad; depad", figures(rootOfTables(choice::pad), rootOfTables(choice::depad))},
    };
    rows.insert(rows.end(), ofModels.begin(), ofModels.end());
    const std::vector<Row> others = {
        {"| Cv series: pad", series(choice::pad)},
        {"| Cv series: depad", series(choice::depad)},
        {"| Advice, pad", figures(shareWhere(choice::pad, advice, "Consider", false),
                                  shareWhere(choice::pad, advice, "If utilized", true))},
        {"| Advice, depad", figures(shareWhere(choice::depad, advice, "Consider", false),
                                    shareWhere(choice::depad, advice, "If utilized", true))},
        {"| Flows shown", figures(shown(0.999), shown(0.29), shown(2.97), shown(12.5), shown(13.5))},
        {"| N |", figures(readBack(0.45), readBack(2.5), readBack(3.5), halves.screen.caption(Label::lblPRFlow),
                          halves.screen.caption(Label::lblBRFlow), halves.screen.caption(Label::lblTotalFlow),
                          halves.state.PumpFlow, halves.state.BreathingFlow, halves.state.TotalFlow)},
        {"| g |", figures(double(std::numeric_limits<double>::digits10), rootOfTables(choice::pad), "1",
                          gasFactor(choice::pad, 1))},
        {"| F, and M / g", figures("166", held, double(toWhole(166 / held)), double(toWhole(166 / 0.8)))},
        {"| Cv shown; share", figures("1", shareWhere(choice::pad, percent, "Less than 1%", false))},
        {"| Factors, g, M, share", figures(double(std::numeric_limits<float>::digits), "2048 4096 1",
                                           1 / (std::nextafter(2048.0F, 4096.0F) - 2048))},
        {"| Factors with decimals",
         figures(highUs.PumpFlow, lowUs.PumpFlow, padMetric.PumpFlow, lowMetric.PumpFlow, lowUs.BreathingFlow, "1 42",
                 lowMetric.BreathingFlow, highUs.BreathingFlow, highMetric.BreathingFlow)},
    };
    rows.insert(rows.end(), others.begin(), others.end());
    return rows;
}

/// The steps of a worked duty up to the lookup flow.
void addFlows(std::vector<Row>& rows, Duty& duty, double pumpFactor, const std::string& breathing)
{
    const SizingState& state = duty.state;
    const auto shownIn = [&](Label label) { return duty.screen.caption(label); };
    const double root = rootOfTables(state.ValveType.c_str());
    const double total = state.ShownTotalFlow;
    const double factor = state.GasFactor;
    rows.insert(
        rows.end(),
        {
            {"| Pump flow", figures(state.PumpRate, pumpFactor, state.PumpFlow, shownIn(Label::lblPRFlow))},
            {"| Breathing", figures(breathing, state.BreathingFlow, shownIn(Label::lblBRFlow))},
            {"| Total flow",
             figures(state.PumpFlow, state.BreathingFlow, state.TotalFlow, shownIn(Label::lblTotalFlow))},
            {"| Gas factor", figures(root, state.SpecGravRoot, root / state.SpecGravRoot, state.GasFactor, factor)},
            {"| F |", figures(total, state.GasFactor, static_cast<float>(total / factor), duty.tableFlow(total))},
        });
    EXPECT_EQ(shownIn(Label::lblComments), ""); // "no advice"
}

std::string shareOf(const Duty& duty)
{
    const SizingState& state = duty.state;
    return figures(state.TotalFlow, double{state.MaxValveCap}, state.PercentCap,
                   duty.screen.caption(Label::lblPercentValveCapacity));
}

void addPadDuty(std::vector<Row>& rows)
{
    Duty duty(choice::series61, choice::pad, choice::api2000, "PSI",
              {{Box::txtSpecGrav, 0.6}, {Box::txtPumpRate, 150}, {Box::txtPressure, 45}, {Box::txtTankVolume, 20000}});
    const SizingState& state = duty.state;
    const SizingState factor = factors(choice::pad, "PSI");
    const double pressure = state.InputPressure;
    const double flow = duty.tableFlow(state.ShownTotalFlow);
    const double capacity = duty.tableCapacity();
    const double whole = toWhole(capacity);
    const RowsAround around(state);

    rows.push_back({"| On the summary", text(state.TotalFlow)});
    rows.push_back({"**Pad, US:**", figures(state.SpecGrav, state.PumpRate, pressure, state.TankVolume)});
    addFlows(rows, duty, factor.PumpFlow, figures(state.TankVolume, factor.BreathingFlow));
    rows.insert(rows.end(), {
                                {"| Cv, size", figures(pressure, flow, around.x2, around.y2, state.SelectedCv,
                                                       figuresIn(state.ValveBodySize))},
                                {"| C |", figures(around.line(pressure), capacity, whole)},
                                {"| M |", figures(whole, double{state.GasFactor}, whole * double{state.GasFactor},
                                                  double{state.MaxValveCap})},
                                {"| Step up", text(state.TotalFlow)},
                                {"| Share", shareOf(duty)},
                            });
}

void addDepadDuty(std::vector<Row>& rows)
{
    Duty duty(choice::series63, choice::depad, choice::api2000, "mbar",
              {{Box::txtSpecGrav, 1.52},
               {Box::txtPumpRate, 200},
               {Box::txtPressure, 135},
               {Box::txtTankVolume, 4550},
               {Box::txtFlashPoint, 60}});
    Duty first = duty; // as before the step up
    SizingContext sizing = first.context();
    modGetValveData(sizing);
    const SizingState& state = duty.state;
    const double pressure = state.InputPressure;
    const double factor = state.GasFactor;
    const RowsAround tank("Select * FROM MetriclargeTank", "TankVol", "DepadHFP", state.TankVolume);
    const RowsAround around(first.state);
    const RowsAround stepped(state);
    const auto capacity = [&](Duty& of) {
        const double table = of.tableCapacity();
        return figures(table, state.GasFactor, static_cast<float>(table * factor), of.state.MaxValveCap);
    };
    const double sizeFlow = duty.tableFlow(double{state.MaxValveCap});
    EXPECT_EQ(modLookupCVDepad(sizing, pressure, toWhole(sizeFlow)), double{state.SelectedCv});

    rows.push_back(
        {"**Depad, metric:**", figures(state.SpecGrav, state.PumpRate, pressure, state.TankVolume, state.FlashPoint)});
    addFlows(rows, duty, factors(choice::depad, "mbar", 60).PumpFlow, tank.line(state.TankVolume));
    rows.insert(rows.end(),
                {
                    {"| Cv, size", figures(pressure, duty.tableFlow(state.ShownTotalFlow), around.x2, around.y2,
                                           first.state.SelectedCv, figuresIn(first.state.ValveBodySize))},
                    {"| C |", figures(around.line(pressure), first.tableCapacity())},
                    {"| M |", capacity(first)},
                    {"| Step up", figures(state.TotalFlow, first.state.MaxValveCap, state.SelectedCv)},
                    {"| C |", figures(stepped.line(pressure), duty.tableCapacity())},
                    {"| M |", capacity(duty)},
                    {"| Size",
                     figures(state.MaxValveCap, state.GasFactor, static_cast<float>(double{state.MaxValveCap} / factor),
                             sizeFlow, stepped.x2, stepped.y2, figuresIn(state.ValveBodySize))},
                    {"| Share", shareOf(duty)},
                });
}

} // namespace

TEST(UserGuide, WorksAValveOutWithTheProgramsOwnFigures)
{
    const std::string all = guide();
    const auto start = all.find(". How a valve is found\n");
    ASSERT_NE(start, std::string::npos);
    const std::string words = all.substr(start, all.find("\n## ", start) - start);
    std::istringstream chapter(words);

    std::vector<Row> expected = constants();
    addPadDuty(expected);
    addDepadDuty(expected);
    auto row = expected.begin();
    for (std::string line; std::getline(chapter, line);) {
        const std::string found = figuresIn(line);
        if (found.empty())
            continue;
        ASSERT_NE(row, expected.end()) << line;
        EXPECT_TRUE(line.starts_with(row->begin)) << "expected " << row->begin << " and not " << line;
        EXPECT_EQ(found, row->figures) << line;
        ++row;
    }
    EXPECT_EQ(row, expected.end()) << row->begin;
    for (const ValveTableSpec& table : valveTableSpecs()) {
        const auto name = words.find(table.name);
        const std::string unit = table.pressUnits == "PSI" ? "psi" : std::string(table.pressUnits);
        EXPECT_TRUE(name != std::string::npos &&
                    words.substr(name, words.find('\n', name) - name).find(unit) != std::string::npos)
            << "the guide has no table " << table.name << " in " << unit;
    }
}

// Checks that the program refuses no duty that a valve of the tables passes, and chooses no wrong
// valve: duty_check [HOW MANY [SEED [DATA FILE]]]
//
// Sizes random duties for every pressure unit of every model on the shipped data file, or on
// another one. From the same rows it works out by itself which valves pass a duty. Exit status 1
// when the program's answer differs, 2 when the check could not run.

#include "base/gases.h"
#include "capacity/capacity_store.h"
#include "engine/fresh_sizing.h"

#include <sqlite3.h>

#include <cmath>
#include <cstdio>
#include <iostream>
#include <random>
#include <stdexcept>

namespace
{

// Reading and interpolation are written anew here. They are not those of `build_capacities`, so
// that a fault there is not repeated here.
using Curve = std::map<double, double>; // flow by pressure
using Curves = std::map<float, Curve>;

Curves readCurves(const std::string& file, const std::string& table)
{
    Curves curves;
    sqlite3* connection = nullptr;
    int result = sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr);
    const auto add = [](void* into, int, char** values, char**) {
        (*static_cast<Curves*>(into))[std::stof(values[0])][std::stod(values[1])] = std::stod(values[2]);
        return 0;
    };
    if (result == SQLITE_OK)
        result = sqlite3_exec(connection, ("SELECT CV, Pressure, flow FROM " + table).c_str(), add, &curves, nullptr);
    const std::string reason = result == SQLITE_OK ? "no rows" : sqlite3_errmsg(connection);
    sqlite3_close(connection);
    if (curves.empty() || result != SQLITE_OK)
        throw std::runtime_error("cannot read " + table + " of " + file + ": " + reason);
    return curves;
}

double flowAt(const Curve& curve, double pressure)
{
    const auto above = curve.lower_bound(pressure);
    if (above == curve.end() || (above == curve.begin() && above->first > pressure))
        return 0;
    if (above->first == pressure)
        return above->second;
    const auto below = std::prev(above);
    return below->second + (pressure - below->first) / (above->first - below->first) * (above->second - below->second);
}

std::string shortText(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return text;
}

/// The duties of one pressure unit of one model.
class OfferCheck
{
public:
    OfferCheck(const Offer& offer, std::string file, std::uint64_t seed)
        : offer_(offer), curves_(readCurves(file, offer.valveTable)), store_(std::move(file), numbers_), random_(seed)
    {
    }

    /// Sizes one random duty. Gives whether program and rows agree.
    bool agrees()
    {
        const double pressure = randomPressure();
        const double gravity = std::stod(
            shortText(random_() % 2 == 0 ? double{gases[random_() % gases.size()].specGrav} : logarithmic(0.1, 5)));
        const double largest = flowAt(curves_.rbegin()->second, pressure) / std::sqrt(gravity);
        // SCFH per gpm and Nm3/h per m3/h: the factors of API Standard 2000 that the program
        // displaces gas by.
        const double perPumpRate = std::string_view(offer_.unitSystem) == choice::us ? 8 : 1.01;
        const std::string pumpRate =
            shortText(std::min(100'000.0, logarithmic(largest / 3000, largest * 1.2) / perPumpRate));

        FreshSizing sizing(offer_, choice::directDisplacement, numbers_);
        sizing.screen.boxes[Box::txtPumpRate] = pumpRate;
        sizing.screen.boxes[Box::txtPressure] = numbers_.general(pressure);
        sizing.screen.boxes[Box::txtSpecGrav] = numbers_.general(gravity);
        sizing.click(numbers_, store_);

        const bool isSized = sizing.screen.hasValve();
        ++(isSized ? sized : refused);
        const std::string fault = faultOf(sizing, pressure, isSized);
        if (!fault.empty())
            std::cout << offer_.valveModel << ' ' << offer_.valveTable << ", pump rate " << pumpRate << ", pressure "
                      << pressure << ", gravity " << gravity << ": " << fault << '\n';
        return fault.empty();
    }

    std::size_t sized = 0;
    std::size_t refused = 0;

private:
    double logarithmic(double from, double to)
    {
        return from * std::pow(to / from, std::uniform_real_distribution(0.0, 1.0)(random_));
    }

    /// Anywhere in the permitted range; one in eight at a row of the table, one in eight just above
    /// one.
    double randomPressure()
    {
        const Curve& rows = curves_.begin()->second;
        const auto row = std::next(rows.begin(), static_cast<std::ptrdiff_t>(random_() % rows.size()))->first;
        const std::uint64_t kind = random_() % 8;
        const double pressure = kind == 0   ? row
                                : kind == 1 ? row * 1.0001
                                            : std::stod(shortText(logarithmic(offer_.lowest, offer_.highest)));
        return std::clamp(pressure, offer_.lowest, offer_.highest);
    }

    std::string faultOf(const FreshSizing& sizing, double pressure, bool isSized) const
    {
        const SizingState& state = sizing.state;
        // The program sizes for a flow cut to a decimal and rounded to a whole number twice, and
        // rounds capacities, too.
        const double gasFactor = state.GasFactor;
        const double rounding = 0.6 + gasFactor;
        if (!sizing.messages.texts.empty())
            return sizing.messages.texts.front();
        for (const auto& [cv, curve] : curves_) {
            const bool isAllowed = pressure >= offer_.minimum.lowest || cv <= offer_.minimum.exemptUpToCv;
            const double capacity = flowAt(curve, pressure) * gasFactor;
            if (isSized && cv == state.SelectedCv)
                return capacity > state.TotalFlow - rounding ? "" : "the valve is too small";
            if (isAllowed && capacity > state.TotalFlow + rounding)
                return "Cv " + shortText(cv) + " passes it, but the program " +
                       (isSized ? "chose Cv " + shortText(state.SelectedCv) : "refused");
        }
        return isSized ? "the table has no such Cv" : "";
    }

    const Offer& offer_;
    NumberText numbers_;
    Curves curves_;
    CapacityStore store_;
    std::mt19937_64 random_;
};

} // namespace

int main(int argc, char* argv[])
{
    try {
        const std::uint64_t count = argc > 1 ? std::stoull(argv[1]) : 30'000;
        const std::uint64_t seed = argc > 2 ? std::stoull(argv[2]) : 1;
        std::uint64_t wrong = 0;
        for (const Offer& offer : offers) {
            OfferCheck check(offer, argc > 3 ? argv[3] : CAPACITIES_FILE, seed);
            std::uint64_t wrongHere = 0;
            for (std::uint64_t duty = 0; duty < count; ++duty)
                wrongHere += !check.agrees();
            std::cout << offer.valveModel << ' ' << offer.valveTable << ": " << check.sized << " sized, "
                      << check.refused << " refused, " << wrongHere << " wrong\n";
            wrong += wrongHere;
        }
        return wrong > 0 ? 1 : 0;
    } catch (const std::exception& failure) {
        std::cerr << "duty_check [HOW MANY [SEED [DATA FILE]]]: " << failure.what() << '\n';
        return 2;
    }
}

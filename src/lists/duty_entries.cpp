#include "lists/duty_entries.h"

#include "base/gases.h"
#include "engine/fresh_sizing.h"
#include "files/csv_reader.h"

#include <algorithm>
#include <functional>
#include <variant>

namespace
{

/// The entry of a choice as the record writes it, told by `isAlike`: one of `permitted`, of which an empty entry is the
/// first. Of the unit systems, the screens show two texts.
std::string chosen(Choice choice, const Entries& entries, const std::vector<std::string>& permitted)
{
    const auto column = std::ranges::find(listColumns, decltype(ListColumn::target)(choice), &ListColumn::target);
    const std::string& entry = entries[static_cast<std::size_t>(column - listColumns)];
    if (trimmed(entry).empty())
        return permitted.front();
    for (const std::string& text : permitted) {
        const UnitSystem* const units = unitsOf(text);
        if (isAlike(entry, text) || (units != nullptr && isAlike(entry, units->option)))
            return text;
    }
    throw CannotBeEntered(std::string(column->name) + ' ' + inQuotes(entry) + ": here it is " + listed(permitted));
}

/// What the setup screen offers for the choices before it.
std::vector<std::string> offered(const char* Offer::*wanted, const std::function<bool(const Offer&)>& isChosen)
{
    std::vector<std::string> names;
    for (const Offer& offer : offers)
        if (isChosen(offer) && std::ranges::find(names, offer.*wanted) == names.end())
            names.emplace_back(offer.*wanted);
    return names;
}

/// The choices are made in the order of the setup screen; its defaults are the first of each.
const Offer& chosenOffer(const Entries& entries)
{
    const auto choose = [&](Choice choice, const char* Offer::*wanted, const auto& isChosen) {
        return chosen(choice, entries, offered(wanted, isChosen));
    };
    const std::string model = choose(Choice::valveModel, &Offer::valveModel, [](const Offer&) { return true; });
    const auto ofModel = [&](const Offer& offer) { return model == offer.valveModel; };
    const std::string type = choose(Choice::valveType, &Offer::valveType, ofModel);
    const auto ofType = [&](const Offer& offer) { return ofModel(offer) && type == offer.valveType; };
    const std::string units = choose(Choice::unitSystem, &Offer::unitSystem, ofType);
    const auto ofUnits = [&](const Offer& offer) { return ofType(offer) && units == offer.unitSystem; };
    const std::string press = choose(Choice::pressUnits, &Offer::pressUnits, ofUnits);
    return *findOffer(model, type, press);
}

/// Picking a listed gas fills in its gravity, typing a gravity names the gas; what the row itself has comes last. A gas
/// that is not listed stays as it is typed and leaves the gravity alone, as on the screen.
void enterGas(const std::string& gas, const std::string& gravity, const NumberText& numbers, PlainScreen& screen)
{
    std::string& gasBox = screen.boxes[Box::cmbBlanketingGas];
    std::string& gravityBox = screen.boxes[Box::txtSpecGrav];
    const auto listedGas = std::ranges::find_if(gases, [&](const Gas& one) { return isAlike(gas, one.name); });
    if (listedGas != gases.end())
        gravityBox = numbers.general(listedGas->specGrav);
    if (!gravity.empty()) {
        gravityBox = gravity;
        gasBox = gasOf(numbers.leading(gravity));
    }
    if (!trimmed(gas).empty())
        gasBox = listedGas != gases.end() ? listedGas->name : gas;
}

/// A number as it is entered, "" where the row has none.
std::string numberEntry(const ListColumn& column, const std::string& entry, const NumberText& numbers)
{
    std::string text(trimmed(entry));
    if (text.empty() || numbers.parse(text))
        return text;
    throw CannotBeEntered(std::string(column.name) + ' ' + inQuotes(text) +
                          " is not a number; here one is written like " + numbers.general(1200.5));
}

/// Fills the boxes of both screens. Entries for boxes that are not shown are passed over; empty ones leave the default.
void enter(const Entries& entries, const NumberText& numbers, FreshSizing& sizing)
{
    const std::string sizingCase = sizingCaseOf(sizing.state);
    std::string gas;
    std::string gravity;
    for (std::size_t at = 0; at < entries.size(); ++at) {
        const ListColumn& column = listColumns[at];
        if (const auto* const field = std::get_if<std::string SizingState::*>(&column.target))
            sizing.state.*(*field) = entries[at];
        const auto* const box = std::get_if<Box>(&column.target);
        if (box == nullptr || !asksFor(sizingCase, *box))
            continue;
        const std::string entry = column.isNumber ? numberEntry(column, entries[at], numbers) : entries[at];
        if (*box == Box::cmbBlanketingGas)
            gas = entry;
        else if (*box == Box::txtSpecGrav)
            gravity = entry;
        else if (!entry.empty())
            sizing.screen.boxes[*box] = entry;
    }
    enterGas(gas, gravity, numbers, sizing.screen);
}

} // namespace

FreshSizing enteredOn(const Entries& entries, const NumberText& numbers)
{
    const Offer& offer = chosenOffer(entries);
    const std::string method = chosen(Choice::sizingMethod, entries, {choice::api2000, choice::directDisplacement});
    FreshSizing sizing(offer, method, numbers);
    enter(entries, numbers, sizing);
    return sizing;
}

std::string listed(const std::vector<std::string>& names)
{
    std::string text;
    for (std::size_t at = 0; at < names.size(); ++at)
        text += (at == 0 ? "" : at + 1 == names.size() ? " or " : ", ") + names[at];
    return text;
}

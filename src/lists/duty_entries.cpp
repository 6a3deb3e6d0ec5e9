#include "lists/duty_entries.h"

#include "base/gases.h"
#include "files/csv_reader.h"
#include "lists/words.h"

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

namespace
{

/// The choices by which offers differ, in the order of the setup screen. Each choice leaves fewer offers.
constexpr struct
{
    Choice choice;
    const char* Offer::*text;
} steps[] = {{Choice::valveModel, &Offer::valveModel},
             {Choice::valveType, &Offer::valveType},
             {Choice::unitSystem, &Offer::unitSystem},
             {Choice::pressUnits, &Offer::pressUnits}};

using Texts = std::vector<const char*>;

bool isIn(const Texts& texts, std::string_view text)
{
    return std::ranges::find(texts, text) != texts.end();
}

std::vector<const Offer*> allOffers()
{
    std::vector<const Offer*> all(std::size(offers));
    std::ranges::transform(offers, all.begin(), [](const Offer& offer) { return &offer; });
    return all;
}

/// The different texts that some offers have in one step.
Texts textsOf(const std::vector<const Offer*>& some, std::size_t step)
{
    Texts texts;
    for (const Offer* const offer : some)
        if (const char* const text = offer->*steps[step].text; !isIn(texts, text))
            texts.push_back(text);
    return texts;
}

std::string listedOf(const Texts& texts, const char* lastOne = " or ")
{
    return listed({texts.begin(), texts.end()}, lastOne);
}

/// The one of `texts` that an entry means; nullptr when it means none. Upper and lower case are alike. A unit system
/// has two texts on the screens, "US" and "U.S. Units".
const char* meant(std::string_view entry, const Texts& texts)
{
    for (const char* const text : texts) {
        if (isAlike(entry, text))
            return text;
        if (const UnitSystem* const units = unitsOf(text); units != nullptr && isAlike(entry, units->option))
            return text;
    }
    return nullptr;
}

std::string entryOf(std::size_t column, std::string_view entry)
{
    return std::string(listColumns[column].name) + ' ' + inQuotes(std::string(entry));
}

/// What the header says of a choice; "" when it says nothing.
std::string_view saidByHeader(Choice choice, const ListHeader& header)
{
    if (choice == Choice::unitSystem && header.unit.system != nullptr)
        return header.unit.system->name;
    if (choice == Choice::pressUnits && header.unit.pressure != nullptr)
        return header.unit.pressure;
    return "";
}

/// The one of `texts` that a row chooses. Where the row has no entry, this is what the header says, or else the first
/// text. Of an entry that is none of them, `canBe` says what can be chosen.
template <typename CanBe>
const char* choose(Choice choice, const Entries& entries, const ListHeader& header, const Texts& texts,
                   const CanBe& canBe)
{
    const std::size_t column = columnOf(choice);
    const std::string_view ofHeader = saidByHeader(choice, header);
    const std::string& by = choice == Choice::unitSystem ? header.systemBy : header.pressureBy;
    const bool isEmpty = trimmed(entries[column]).empty();
    if (isEmpty && ofHeader.empty())
        return texts.front();
    const std::string_view entry = isEmpty ? ofHeader : entries[column];
    const char* const found = meant(entry, texts);
    if (found == nullptr)
        throw CannotBeEntered(entryOf(column, entry) + (isEmpty ? " of " + by : "") + ": " + canBe(entry));
    if (!ofHeader.empty() && found != ofHeader)
        throw CannotBeEntered(entryOf(column, entry) + ": it is " + std::string(ofHeader) + " by " + by);
    return found;
}

/// What can be chosen in a step, for the message that refuses `entry`.
std::string canBeIn(std::size_t step, std::string_view entry, const Texts& texts, const Texts& chosen)
{
    const Texts all = textsOf(allOffers(), step);
    if (all.size() == texts.size())
        return "it must be " + listedOf(all);
    const std::string here = "for " + listedOf(chosen, " and ") + " it must be " + listedOf(texts);
    return meant(entry, all) != nullptr ? here : "it must be " + listedOf(all) + "; " + here;
}

/// The offer that a row chooses. The choices are made in the order of the setup screen, and the first text is the
/// default.
const Offer& chosenOffer(const Entries& entries, const ListHeader& header)
{
    std::vector<const Offer*> left = allOffers();
    Texts chosen;
    for (std::size_t step = 0; step < std::size(steps); ++step) {
        const Texts texts = textsOf(left, step);
        const auto canBe = [&](std::string_view entry) { return canBeIn(step, entry, texts, chosen); };
        const std::string_view text = chosen.emplace_back(choose(steps[step].choice, entries, header, texts, canBe));
        std::erase_if(left, [&](const Offer* offer) { return text != offer->*steps[step].text; });
    }
    return *left.front();
}

/// Whether a text is a number with thousands separators. A long text is none, and its search might overflow the stack.
bool hasThousandsSeparators(const std::string& text)
{
    static const std::regex separated(
        "[+-]?[0-9]{1,3}(([ '`.,]|\u00B4|\u2018|\u2019|\u00A0|\u2009|\u202F)[0-9]{3})+([.,][0-9]+)?");
    return text.size() < 50 && std::regex_match(text, separated);
}

/// The text that is entered for a number; "" when the row has none. Throws CannotBeEntered for a text that is no
/// number.
std::string numberEntry(std::size_t column, std::string_view entry, const NumberText& numbers)
{
    std::string text(trimmed(entry));
    if (text.empty() || numbers.parse(text))
        return text;
    const std::string written = numbers.general(1200.5);
    if (hasThousandsSeparators(text))
        throw CannotBeEntered(entryOf(column, text) +
                              ": a number has no thousands separators; here one is written like " + written);
    throw CannotBeEntered(entryOf(column, text) + " is not a number; here one is written like " + written);
}

/// Enters gas and gravity as on the screen: a listed gas fills in its gravity, and a gravity fills in its gas. What the
/// row says itself is kept. A gas that is not listed needs a gravity: else it would be sized with that of the default
/// gas.
void enterGas(std::string_view gas, const std::string& gravity, const NumberText& numbers, PlainScreen& screen)
{
    std::string& gasBox = screen.boxes[Box::cmbBlanketingGas];
    std::string& gravityBox = screen.boxes[Box::txtSpecGrav];
    const auto listedGas = std::ranges::find_if(gases, [&](const Gas& one) { return isAlike(gas, one.name); });
    const bool isListed = listedGas != gases.end();
    if (isListed)
        gravityBox = numbers.general(listedGas->specGrav);
    else if (!trimmed(gas).empty() && gravity.empty()) {
        Texts names;
        for (const Gas& one : gases)
            names.push_back(one.name);
        throw CannotBeEntered(entryOf(columnOf(Box::cmbBlanketingGas), gas) + ": listed is " + listedOf(names) +
                              "; any other gas needs its Specific Gravity");
    }
    if (!gravity.empty()) {
        if (const auto value = numbers.parse(gravity); value && *value <= 0)
            throw CannotBeEntered(entryOf(columnOf(Box::txtSpecGrav), gravity) + ": it must be greater than 0");
        gravityBox = gravity;
        gasBox = gasOf(numbers.leading(gravity));
    }
    if (isListed && !gasBox.empty() && gasBox != listedGas->name && !gravity.empty())
        throw CannotBeEntered(entryOf(columnOf(Box::cmbBlanketingGas), gas) + ": the Specific Gravity " + gravity +
                              " is that of " + gasBox);
    if (!trimmed(gas).empty())
        gasBox = isListed ? listedGas->name : std::string(gas);
}

/// Fills the boxes of both screens. An entry for a hidden box is ignored. An empty entry leaves the default.
void enter(const Entries& entries, const NumberText& numbers, FreshSizing& sizing)
{
    const std::string sizingCase = sizingCaseOf(sizing.state);
    for (std::size_t at = 0; at < entries.size(); ++at) {
        const ListColumn& column = listColumns[at];
        if (const auto* const field = std::get_if<std::string SizingState::*>(&column.target))
            sizing.state.*(*field) = entries[at];
        const auto* const box = std::get_if<Box>(&column.target);
        const bool isOfGas = box != nullptr && (*box == Box::cmbBlanketingGas || *box == Box::txtSpecGrav);
        if (box == nullptr || isOfGas || entries[at].empty() || !asksFor(sizingCase, *box))
            continue;
        std::string entry = column.isNumber ? numberEntry(at, entries[at], numbers) : std::string(entries[at]);
        if (!entry.empty())
            sizing.screen.boxes[*box] = std::move(entry);
    }
    constexpr std::size_t gravity = columnOf(Box::txtSpecGrav);
    enterGas(entries[columnOf(Box::cmbBlanketingGas)], numberEntry(gravity, entries[gravity], numbers), numbers,
             sizing.screen);
}

} // namespace

FreshSizing enteredOn(const Entries& entries, const ListHeader& header, const NumberText& numbers)
{
    const Offer& offer = chosenOffer(entries, header);
    const Texts methods = {choice::api2000, choice::directDisplacement};
    const char* const method = choose(Choice::sizingMethod, entries, header, methods,
                                      [&](std::string_view) { return "it must be " + listedOf(methods); });
    FreshSizing sizing(offer, method, numbers);
    enter(entries, numbers, sizing);
    return sizing;
}

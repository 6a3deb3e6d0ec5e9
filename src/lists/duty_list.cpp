#include "lists/duty_list.h"

#include "base/customer_fields.h"
#include "base/failure.h"
#include "base/gases.h"

#include <algorithm>
#include <array>
#include <functional>
#include <stdexcept>
#include <string_view>
#include <variant>

namespace
{

/// The choices of the setup screen.
enum class Choice
{
    valveModel,
    valveType,
    sizingMethod,
    unitSystem,
    pressUnits,
};

/// A column that a list may have and what it is entered into.
struct ListColumn
{
    const char* name;
    bool isNumber;
    std::variant<Choice, Box, std::string SizingState::*> target;
};

/// The column of a text about the customer.
ListColumn columnOf(std::string SizingState::*customerText)
{
    return {std::ranges::find(customerFields, customerText, &CustomerField::text)->name, false, customerText};
}

const ListColumn listColumns[] = {
    columnOf(&SizingState::CustTagNo),
    {"Valve Model", false, Choice::valveModel},
    {"Valve Type", false, Choice::valveType},
    {"Sizing Method", false, Choice::sizingMethod},
    {"Units of Measure", false, Choice::unitSystem},
    {"Units of Pressure", false, Choice::pressUnits},
    {"Pump Rate", true, Box::txtPumpRate},
    {"Pressure", true, Box::txtPressure},
    {"Tank Volume", true, Box::txtTankVolume},
    {"Gas", false, Box::cmbBlanketingGas},
    {"Specific Gravity", true, Box::txtSpecGrav},
    {"Boiling Point", true, Box::txtBoilingPoint},
    {"Flash Point", true, Box::txtFlashPoint},
    {"Material", false, Box::txtStoredMaterial},
    columnOf(&SizingState::CustomerName),
    columnOf(&SizingState::CustomerLocation),
    columnOf(&SizingState::Notes),
    columnOf(&SizingState::Representative),
};

constexpr const char* statusNames[] = {"sized", "refused", "failed"}; // in the order of SizedDuty::Status
static_assert(std::size(statusNames) == static_cast<std::size_t>(SizedDuty::Status::failed) + 1);

/// A column that the answer has beside those of the list, and what the main form shows in it.
struct AnswerColumn
{
    const char* name;
    std::string (*text)(const SizedDuty& duty);
};

template <Label label>
std::string captionOf(const SizedDuty& duty)
{
    return duty.sizing ? duty.sizing->screen.caption(label) : std::string();
}

std::string commentsOf(const SizedDuty& duty)
{
    return duty.sizing ? duty.sizing->screen.caption(Label::lblComments) : duty.reason;
}

std::string messagesOf(const SizedDuty& duty)
{
    std::string text;
    if (duty.sizing)
        for (const std::string& message : duty.sizing->messages.texts)
            text += (text.empty() ? "" : " | ") + message;
    return text;
}

const AnswerColumn answerColumns[] = {
    {"Status", [](const SizedDuty& duty) { return std::string(statusNames[static_cast<std::size_t>(duty.status)]); }},
    {"Pump-Rate Flow", captionOf<Label::lblPRFlow>},
    {"Breathing Flow", captionOf<Label::lblBRFlow>},
    {"Total Flow", captionOf<Label::lblTotalFlow>},
    {"Flow Units", [](const SizedDuty& duty) { return duty.sizing ? duty.sizing->state.FlowUnits : std::string(); }},
    {"Valve Coefficient", captionOf<Label::lblCV>},
    {"Valve Body Size", captionOf<Label::lblValveBodySize>},
    {"Max Valve Capacity", captionOf<Label::lblMaxValveCapacity>},
    {"Capacity Utilized (%)", captionOf<Label::lblPercentValveCapacity>},
    {"Comments", commentsOf},
    {"Messages", messagesOf},
};

/// A row that cannot be entered on the screens, and why.
struct CannotBeEntered : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// What a row has for every column, in their order; "" where the list has no such column.
using Entries = std::array<std::string, std::size(listColumns)>;

/// "A", "A or B", "A, B or C".
std::string listed(const std::vector<std::string>& names)
{
    std::string text;
    for (std::size_t at = 0; at < names.size(); ++at)
        text += (at == 0 ? "" : at + 1 == names.size() ? " or " : ", ") + names[at];
    return text;
}

std::vector<std::string> columnNames()
{
    std::vector<std::string> names;
    for (const ListColumn& column : listColumns)
        names.emplace_back(column.name);
    return names;
}

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

/// The columns of the list as the reader of CSV texts knows columns.
std::vector<CsvColumn> csvColumns()
{
    std::vector<CsvColumn> columns;
    for (const ListColumn& column : listColumns)
        columns.push_back({column.name, column.isNumber});
    return columns;
}

/// Finds how the list is written and rewinds it.
CsvFormat formatOf(std::istream& list)
{
    const std::streampos start = list.tellg();
    const CsvFormat format = findCsvFormat(list, csvColumns());
    list.clear();
    list.seekg(start);
    return format;
}

NumberText numbersOf(const CsvFormat& format)
{
    NumberText::Signs signs;
    if (format.decimalMark == ',')
        std::swap(signs.decimal, signs.thousands);
    return NumberText(signs);
}

} // namespace

DutyList::DutyList(std::istream& list, std::string dataFile)
    : format_(formatOf(list)), numbers_(numbersOf(format_)), store_(std::move(dataFile), numbers_),
      reader_(list, format_.separator)
{
    readHeader();
    expectDataFile();
}

void DutyList::readHeader()
{
    CsvRow row;
    if (!reader_.next(row) || row.fields.empty())
        throw CsvProblem(std::max<std::size_t>(row.line, 1), "there is no header row with the names of the columns");
    header_ = row.fields;
    while (header_.back().empty()) // columns that a spreadsheet adds
        header_.pop_back();
    for (const std::string& name : header_) {
        const auto column = std::ranges::find_if(listColumns, [&](const auto& one) { return isAlike(name, one.name); });
        const auto number = static_cast<std::size_t>(column - listColumns);
        const std::string place = "column " + std::to_string(order_.size() + 1) + ", " + inQuotes(name);
        if (column == std::end(listColumns))
            throw CsvProblem(row.line, place + ": a column is " + listed(columnNames()));
        if (std::ranges::find(order_, number) != order_.end())
            throw CsvProblem(row.line, place + ": it stands twice");
        order_.push_back(number);
    }
}

/// Without a data file every row would fail.
void DutyList::expectDataFile()
{
    std::string reason;
    store_.keepFile();
    for (const Offer& offer : offers) {
        try {
            store_.table(offer.valveTable, {});
            return;
        } catch (const SilentFailure& failure) { // of this table alone, or of the file
            reason = failure.what();
        }
    }
    throw std::runtime_error("the valve tables cannot be read: " + reason);
}

std::optional<SizedDuty> DutyList::next()
{
    SizedDuty duty;
    if (!reader_.next(duty.row))
        return std::nullopt;
    try {
        sizeRow(duty);
    } catch (const CannotBeEntered& refusal) {
        duty.sizing.reset();
        duty.reason = refusal.what();
    }
    return duty;
}

void DutyList::sizeRow(SizedDuty& duty)
{
    std::vector<std::string>& fields = duty.row.fields;
    if (fields.empty())
        throw CannotBeEntered("line " + std::to_string(duty.row.line) +
                              ": broken quoting; a text with a quotation mark is written like \"1/2\"\"\"");
    const std::size_t count = fields.size();
    while (fields.size() > order_.size() && fields.back().empty())
        fields.pop_back();
    if (fields.size() > order_.size())
        throw CannotBeEntered(std::to_string(count) + " fields where the header has " + std::to_string(order_.size()));
    Entries entries;
    for (std::size_t at = 0; at < fields.size(); ++at) // a row may end early: what is missing is empty
        entries[order_[at]] = fields[at];

    const Offer& offer = chosenOffer(entries);
    const std::string method = chosen(Choice::sizingMethod, entries, {choice::api2000, choice::directDisplacement});
    FreshSizing& sizing = duty.sizing.emplace(offer, method, numbers_);
    enter(entries, numbers_, sizing);
    sizing.click(numbers_, store_);
    if (const std::string reason = store_.whyUnreadable(); !reason.empty())
        sizing.messages.show(reason);
    duty.status = !sizing.messages.texts.empty() ? SizedDuty::Status::failed
                  : sizing.screen.hasValve()     ? SizedDuty::Status::sized
                                                 : SizedDuty::Status::refused;
}

std::string DutyList::csvLine(const std::vector<std::string>& fields) const
{
    std::string text;
    for (const std::string& field : fields)
        text += (&field == fields.data() ? "" : std::string(1, format_.separator)) + csvField(field, format_.separator);
    return text + format_.lineEnd;
}

std::string DutyList::answerHeader() const
{
    std::vector<std::string> fields = header_;
    for (const AnswerColumn& column : answerColumns)
        fields.emplace_back(column.name);
    return (format_.byteOrderMark ? "\xEF\xBB\xBF" : "") + csvLine(fields);
}

std::string DutyList::answer(const SizedDuty& duty) const
{
    std::vector<std::string> fields = duty.row.fields;
    if (fields.empty())
        fields.push_back(duty.row.broken);
    fields.resize(order_.size()); // those beyond the header's are what the row is refused for
    for (const AnswerColumn& column : answerColumns)
        fields.push_back(column.text(duty));
    return csvLine(fields);
}

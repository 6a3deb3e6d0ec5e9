#include "lists/list_header.h"

#include "base/offered.h"
#include "lists/answer_columns.h"
#include "lists/words.h"

#include <algorithm>

namespace
{

/// For each column, its number in `answerColumns()`, or `nowhere`. Of two columns with the same name, the last is the
/// answer's. A list without most of these columns is no answer: there, such columns are the user's own.
std::vector<std::size_t> answerPlaces(const std::vector<std::string>& names)
{
    std::vector<std::size_t> places(names.size(), ListHeader::nowhere);
    std::size_t found = 0;
    for (std::size_t number = 0; number < answerColumns().size(); ++number)
        for (std::size_t at = names.size(); at-- > 0;)
            if (isAlike(names[at], answerColumns()[number].name)) {
                places[at] = number;
                ++found;
                break;
            }
    if (found * 2 <= answerColumns().size())
        std::ranges::fill(places, ListHeader::nowhere);
    return places;
}

/// nullptr when no column of an answer has this name.
const AnswerColumn* answerColumnOf(const std::string& header)
{
    const auto found =
        std::ranges::find_if(answerColumns(), [&](const AnswerColumn& one) { return isAlike(header, one.name); });
    return found == answerColumns().end() ? nullptr : &*found;
}

std::string allColumns()
{
    std::vector<std::string> names;
    for (const ListColumn& column : listColumns)
        names.emplace_back(column.name);
    return listed(names);
}

} // namespace

ListHeader::ListHeader(const CsvRow& row)
{
    std::vector<std::string> names = row.fields;
    while (!names.empty() && names.back().empty()) // columns that a spreadsheet adds
        names.pop_back();
    if (names.empty())
        throw CsvProblem(std::max<std::size_t>(row.line, 1), "there is no header row with the names of the columns");
    if (names.size() == 1 && equalsInAnyCase(std::string_view(names.front()).substr(0, 4), "sep="))
        throw CsvProblem(row.line, "delete this line; the separator is found without it");
    places.fill(nowhere);
    const std::vector<std::size_t> ofAnswer = answerPlaces(names);
    std::vector<std::string> faults;
    bool hasDuty = false;
    for (std::size_t at = 0; at < names.size(); ++at) {
        const std::string& name = names[at];
        const std::string place = "column " + std::to_string(at + 1) + ", " + inQuotes(name);
        if (ofAnswer[at] != nowhere) {
            columns.push_back({name, Kind::answer, ofAnswer[at]});
            continue;
        }
        const AnswerColumn* const ofResults = answerColumnOf(name);
        const auto named = namedColumn(name);
        hasDuty = hasDuty || named;
        if (named)
            addDuty(place, *named, faults);
        else if (isUnitAlone(name))
            faults.push_back(place + ": a unit alone; a comma in a header wants quotation marks around it");
        else if (ofResults != nullptr && ofResults->unitOf)
            faults.push_back(place + ": a unit is read from the header of its figures, as in Pump Rate [m3/h]");
        else if (const auto other = ofResults != nullptr ? std::nullopt : resembledColumn(name))
            faults.push_back(place + ": it resembles " + listColumns[*other].name);
        columns.push_back({name, named ? Kind::duty : Kind::own, named ? named->number : 0});
    }
    if (!hasDuty && faults.empty())
        faults.push_back("no column is one of a duty: " + allColumns());
    std::string all;
    for (const std::string& fault : faults)
        all += (all.empty() ? "" : "; ") + fault;
    if (!all.empty())
        throw CsvProblem(row.line, all);
    given = columns.size();
    const auto first = std::ranges::find_if(columns, [](const Column& one) { return one.kind != Kind::answer; });
    firstGiven = static_cast<std::size_t>(first - columns.begin());
    addWhatIsLacking();
}

void ListHeader::addDuty(const std::string& header, const NamedColumn& named, std::vector<std::string>& faults)
{
    if (places[named.number] != nowhere)
        faults.push_back(header + ": " + listColumns[named.number].name + " stands twice");
    places[named.number] = columns.size();
    if (!named.unit)
        faults.push_back(header + ": its unit must be " + unitsFor(named.number));
    else
        addUnit(header, *named.unit, faults);
    if (!named.unitText.empty())
        boxesWithUnit_.push_back(std::get<Box>(listColumns[named.number].target));
}

void ListHeader::addUnit(const std::string& header, const HeaderUnit& found, std::vector<std::string>& faults)
{
    if (found.system == nullptr)
        return;
    if (unit.system != nullptr && unit.system != found.system)
        faults.push_back(header + ": its unit is " + found.system->name + ", that of " + systemBy + " is " +
                         unit.system->name);
    unit.system = found.system;
    systemBy = header;
    if (found.pressure != nullptr) {
        unit.pressure = found.pressure;
        pressureBy = header;
    }
}

/// Adds columns for the choices that the list has no column for, unless its header says them; then those of the
/// results.
void ListHeader::addWhatIsLacking()
{
    for (const FilledColumn& filled : filledColumns())
        if (const std::size_t number = filled.column; places[number] == nowhere) {
            if (number == columnOf(Choice::pressUnits) && unit.pressure != nullptr)
                continue;
            places[number] = columns.size();
            columns.push_back({listColumns[number].name, Kind::duty, number});
        }
    for (std::size_t number = 0; number < answerColumns().size(); ++number) {
        const AnswerColumn& column = answerColumns()[number];
        const bool isSaid = column.unitOf && std::ranges::find(boxesWithUnit_, *column.unitOf) != boxesWithUnit_.end();
        if (!isSaid && placeOfAnswer(column.name) == nowhere)
            columns.push_back({column.name, Kind::answer, number});
    }
}

bool ListHeader::isAnswer() const
{
    const auto last = columns.begin() + static_cast<std::ptrdiff_t>(given);
    return std::any_of(columns.begin(), last, [](const Column& one) { return one.kind == Kind::answer; });
}

std::size_t ListHeader::placeOfAnswer(std::string_view name) const
{
    const auto found = std::ranges::find_if(columns, [&](const Column& column) {
        return column.kind == Kind::answer && name == answerColumns()[column.number].name;
    });
    return found == columns.end() ? nowhere : static_cast<std::size_t>(found - columns.begin());
}

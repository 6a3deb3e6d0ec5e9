#include "lists/duty_list.h"

#include "base/failure.h"
#include "base/gases.h"
#include "lists/answer_columns.h"
#include "lists/duty_entries.h"
#include "lists/words.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace
{

constexpr const char* brokenQuoting = "broken quoting; a text with a quotation mark is written like \"1/2\"\"\"";

std::string tooManyFields(std::size_t count)
{
    return std::to_string(count) + " fields are more than the header has columns";
}

/// What kind of column the reader of CSV texts finds under a header.
CsvKind kindOf(std::string_view header)
{
    const auto named = namedColumn(header);
    return !named ? CsvKind::unknown : listColumns[named->number].isNumber ? CsvKind::number : CsvKind::text;
}

/// Finds how the list is written and rewinds it.
CsvFormat formatOf(std::istream& list, const CsvKnown& known)
{
    const std::streampos start = list.tellg();
    const CsvFormat format = findCsvFormat(list, kindOf, known);
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

DutyList::DutyList(std::istream& list, std::string dataFile, const CsvKnown& known)
    : format_(formatOf(list, known)), numbers_(numbersOf(format_)), store_(std::move(dataFile), numbers_),
      reader_(list, format_.separator), header_(readHeader()), filledInAt_(header_.placeOfAnswer(filledInName)),
      commentsAt_(header_.placeOfAnswer(commentsName))
{
    if (CsvRow row; reader_.next(row))
        expectNoUnits(first_.emplace(std::move(row)));
    expectDataFile();
    tables_ = tablesLabel(store_);
    tablesText_ = tables_ ? tables_->label : "not labelled";
}

ListHeader DutyList::readHeader()
{
    CsvRow row;
    reader_.next(row); // of an empty list, `row` stays empty, and ListHeader refuses it
    return ListHeader(row);
}

/// Throws when no table can be read: every row would fail.
void DutyList::expectDataFile()
{
    std::string reason;
    store_.keepFile();
    for (const Offer& offer : offers) {
        try {
            store_.table(offer.valveTable, {});
            return;
        } catch (const SilentFailure& failure) { // the next table may be readable
            reason = failure.what();
        }
    }
    throw std::runtime_error("the valve tables cannot be read: " + reason);
}

std::string DutyList::tagNumber(const SizedDuty& duty) const
{
    const std::size_t place = header_.places[columnOf(&SizingState::CustTagNo)];
    return place < duty.row.fields.size() ? duty.row.fields[place] : "";
}

std::optional<SizedDuty> DutyList::next()
{
    SizedDuty duty;
    if (first_)
        duty.row = std::exchange(first_, std::nullopt).value();
    else if (!reader_.next(duty.row))
        return std::nullopt;
    duty.reason = misfit(duty.row);
    if (!duty.reason.empty())
        return duty;
    emptyWhatWasFilledIn(duty.row.fields);
    try {
        sizeRow(duty);
    } catch (const CannotBeEntered& refusal) {
        duty.sizing.reset();
        duty.reason = refusal.what();
    }
    return duty;
}

/// A row of units below the header is no duty, and the rows below it would be sized in other units.
void DutyList::expectNoUnits(const CsvRow& row) const
{
    for (std::size_t at = 0; at < std::min(row.fields.size(), header_.given); ++at) {
        const ListHeader::Column& column = header_.columns[at];
        std::string_view text = trimmed(row.fields[at]);
        if (text.size() > 2 && (text.front() == '[' || text.front() == '('))
            text = text.substr(1, text.size() - 2);
        if (column.kind == ListHeader::Kind::duty && listColumns[column.number].isNumber && isUnitAlone(text))
            throw CsvProblem(row.line,
                             "column " + std::to_string(at + 1) + ", " + inQuotes(row.fields[at]) +
                                 ": delete this line; a unit is read from the header, as in Pump Rate [m3/h]");
    }
}

/// Why the fields of a row do not fit the columns; "" when they do. Such a row is written to the answer as one text. In
/// an answer that is read again, such a text is refused for the same reason.
std::string DutyList::misfit(CsvRow& row) const
{
    std::vector<std::string>& fields = row.fields;
    if (fields.empty())
        return brokenQuoting;
    while (fields.size() > header_.given && fields.back().empty())
        fields.pop_back();
    std::string reason;
    if (fields.size() > header_.given) {
        reason = tooManyFields(fields.size());
        row.broken = csvText(fields, format_.separator);
    } else if (commentsAt_ < fields.size() && !fields[commentsAt_].empty() && hasOneText(fields)) {
        row.broken = fields[header_.firstGiven];
        std::istringstream text(row.broken);
        CsvRow earlier;
        CsvReader(text, format_.separator).next(earlier);
        reason = earlier.fields.empty() ? brokenQuoting : tooManyFields(earlier.fields.size());
        if (reason != fields[commentsAt_])
            return "";
    }
    if (!reason.empty())
        fields.clear();
    return reason;
}

/// Whether only the first of the list's own fields has a text.
bool DutyList::hasOneText(const std::vector<std::string>& fields) const
{
    for (std::size_t at = 0; at < fields.size(); ++at)
        if (at != header_.firstGiven && header_.columns[at].kind != ListHeader::Kind::answer && !fields[at].empty())
            return false;
    return true;
}

/// Empties the fields of an answer's row that the program had filled in, unless the user has changed them. Points and
/// commas are taken as alike: a spreadsheet may have changed the decimal mark.
void DutyList::emptyWhatWasFilledIn(std::vector<std::string>& fields) const
{
    if (filledInAt_ >= fields.size())
        return;
    std::string filledIn = fields[filledInAt_];
    std::ranges::replace(filledIn, ',', '.');
    for (const FilledColumn& filled : filledColumns()) {
        const std::size_t place = header_.places[filled.column];
        if (place >= fields.size() || trimmed(fields[place]).empty())
            continue;
        std::string part;
        addFilledIn(part, filled.column, trimmed(fields[place]));
        std::ranges::replace(part, ',', '.');
        const std::size_t at = filledIn.find(part);
        const std::string_view rest = std::string_view(filledIn).substr(std::min(filledIn.size(), at + part.size()));
        if (at != std::string::npos && (rest.empty() || rest.starts_with(betweenParts)))
            fields[place].clear();
    }
}

void DutyList::sizeRow(SizedDuty& duty)
{
    const std::vector<std::string>& fields = duty.row.fields;
    Entries entries;
    for (std::size_t column = 0; column < entries.size(); ++column) // a row may have fewer fields than the header
        if (header_.places[column] < fields.size())
            entries[column] = fields[header_.places[column]];

    FreshSizing& sizing = duty.sizing.emplace(enteredOn(entries, header_, numbers_));
    expectUnits(duty);
    noteTaken(entries, sizing);
    noteOtherGravity(entries, duty.row.line);
    sizing.click(numbers_, store_);
    if (const std::string reason = store_.trouble(); !reason.empty())
        sizing.messages.show(reason);
    duty.status = !sizing.messages.texts.empty() ? SizedDuty::Status::failed
                  : sizing.screen.hasValve()     ? SizedDuty::Status::sized
                                                 : SizedDuty::Status::refused;
}

/// Throws when a unit in a row of an answer is not the one that the row is sized in: the user has changed it there and
/// means another duty.
void DutyList::expectUnits(const SizedDuty& duty) const
{
    const AnswerParts parts{duty, "", tablesText_};
    for (std::size_t at = 0; at < duty.row.fields.size(); ++at) {
        const ListHeader::Column& column = header_.columns[at];
        if (column.kind != ListHeader::Kind::answer || !answerColumns()[column.number].unitOf)
            continue;
        const std::string unit = answerColumns()[column.number].text(parts);
        if (!trimmed(duty.row.fields[at]).empty() && !isAlike(duty.row.fields[at], unit))
            throw CannotBeEntered(column.name + ' ' + inQuotes(duty.row.fields[at]) + ": here it is " + unit +
                                  ", by Units of Measure");
    }
}

/// Counts the defaults that a row is sized with. What the header says is no default, nor is a gas that its gravity
/// gives or a gravity that its gas gives.
void DutyList::noteTaken(const Entries& entries, const FreshSizing& sizing)
{
    constexpr std::size_t gravity = columnOf(Box::txtSpecGrav);
    constexpr std::size_t gas = columnOf(Box::cmbBlanketingGas);
    for (const FilledColumn& filled : filledColumns()) {
        const std::size_t column = filled.column;
        const bool isSaid = (column == columnOf(Choice::unitSystem) && header_.unit.system != nullptr) ||
                            (column == columnOf(Choice::pressUnits) && header_.unit.pressure != nullptr) ||
                            column == gravity || (column == gas && !trimmed(entries[gravity]).empty());
        if (isSaid || !trimmed(entries[column]).empty())
            continue;
        auto& texts = taken_[column];
        const std::string_view text = filled.text(sizing);
        const auto known = texts.find(text);
        ++(known != texts.end() ? known->second : texts[std::string(text)]);
    }
}

/// The screens allow it, too; but there, the gravity of the liquid is not asked for beside it.
void DutyList::noteOtherGravity(const Entries& entries, std::size_t line)
{
    const std::string_view gravity = trimmed(entries[columnOf(Box::txtSpecGrav)]);
    const auto gas = std::ranges::find_if(
        gases, [&](const Gas& one) { return isAlike(entries[columnOf(Box::cmbBlanketingGas)], one.name); });
    if (gravity.empty() || gas == gases.end() || static_cast<float>(numbers_.leading(gravity)) == gas->specGrav)
        return;
    ++otherGravities_;
    firstOtherGravity_ = std::min(firstOtherGravity_, line);
}

std::vector<std::string> DutyList::notes() const
{
    std::vector<std::string> lines;
    if (otherGravities_ > 0)
        lines.push_back("the Specific Gravity is not that of the listed gas, and is taken: in " +
                        std::to_string(otherGravities_) + (otherGravities_ == 1 ? " row" : " rows") +
                        ", first in line " + std::to_string(firstOtherGravity_));
    for (const auto& [column, texts] : taken_) {
        std::vector<std::string> parts;
        for (const auto& [text, rows] : texts)
            parts.push_back(text + " taken for " + std::to_string(rows) + (rows == 1 ? " row" : " rows"));
        lines.push_back((header_.has(column) ? "no entry under " : "no column ") +
                        std::string(listColumns[column].name) + ": " + listed(parts, ", "));
    }
    std::vector<std::string> own;
    for (const ListHeader::Column& column : header_.columns)
        if (column.kind == ListHeader::Kind::own)
            own.push_back(inQuotes(column.name));
    constexpr std::size_t namedOwn = 10; // more fill a screen
    if (own.size() > namedOwn + 1) {
        own[namedOwn] = std::to_string(own.size() - namedOwn) + " more";
        own.resize(namedOwn + 1);
    }
    if (!own.empty())
        lines.push_back("copied unchanged, for the program does not use them: " + listed(own, ", "));
    return lines;
}

std::vector<std::string> DutyList::answerNames() const
{
    std::vector<std::string> names;
    for (const ListHeader::Column& column : header_.columns)
        names.push_back(column.name);
    return names;
}

std::vector<std::string> DutyList::answerFields(const SizedDuty& duty) const
{
    std::vector<std::string> fields;
    fields.reserve(header_.columns.size());
    fields = duty.row.fields;
    fields.resize(header_.columns.size());
    if (duty.row.fields.empty())
        fields[header_.firstGiven] = duty.row.broken;
    std::string filledIn;
    for (const FilledColumn& filled : filledColumns()) {
        const std::size_t place = header_.places[filled.column];
        if (!duty.sizing || place == ListHeader::nowhere || !trimmed(fields[place]).empty())
            continue;
        if (const std::string_view text = filled.text(*duty.sizing); !text.empty()) {
            addFilledIn(filledIn, filled.column, text);
            fields[place] = text;
        }
    }
    const AnswerParts parts{duty, filledIn, tablesText_};
    for (std::size_t at = 0; at < fields.size(); ++at)
        if (const ListHeader::Column& column = header_.columns[at]; column.kind == ListHeader::Kind::answer)
            if (duty.sizing || !answerColumns()[column.number].unitOf) // a wrong unit stays, for the user to correct
                fields[at] = answerColumns()[column.number].text(parts);
    return fields;
}

std::string DutyList::line(std::vector<std::string> fields, std::size_t from) const
{
    fields.erase(fields.begin(), fields.begin() + static_cast<std::ptrdiff_t>(from));
    return csvText(fields, format_.separator) + format_.lineEnd;
}

std::string DutyList::answerHeader() const
{
    return (format_.byteOrderMark ? "\xEF\xBB\xBF" : "") + line(answerNames(), 0);
}

std::string DutyList::answer(const SizedDuty& duty) const
{
    return line(answerFields(duty), 0);
}

std::string DutyList::addedHeader() const
{
    return line(answerNames(), header_.given);
}

std::string DutyList::added(const SizedDuty& duty) const
{
    return line(answerFields(duty), header_.given);
}

std::vector<std::string> DutyList::lacking() const
{
    std::vector<std::string> names;
    for (const Box box : {Box::txtPumpRate, Box::txtPressure, Box::txtTankVolume})
        if (!header_.has(columnOf(box)))
            names.emplace_back(listColumns[columnOf(box)].name);
    return names;
}

#include "lists/duty_list.h"

#include "base/failure.h"
#include "lists/answer_columns.h"
#include "lists/duty_entries.h"
#include "lists/words.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace
{

constexpr const char* brokenQuoting = "broken quoting; a text with a quotation mark is written like \"1/2\"\"\"";

std::string tooManyFields(std::size_t count)
{
    return std::to_string(count) + " fields are more than the header has columns";
}

/// How the reader of CSV texts takes a header.
CsvKind kindOf(std::string_view header)
{
    const auto named = namedColumn(header);
    return !named ? CsvKind::unknown : listColumns[named->number].isNumber ? CsvKind::number : CsvKind::text;
}

/// Finds how the list is written and rewinds it.
CsvFormat formatOf(std::istream& list)
{
    const std::streampos start = list.tellg();
    const CsvFormat format = findCsvFormat(list, kindOf);
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
      reader_(list, format_.separator), header_(readHeader()), filledInAt_(header_.placeOfAnswer(filledInName)),
      commentsAt_(header_.placeOfAnswer(commentsName))
{
    expectDataFile();
    tables_ = tablesLabel(store_);
}

ListHeader DutyList::readHeader()
{
    CsvRow row;
    reader_.next(row); // without a row, a header without names
    return ListHeader(row);
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

/// Why the fields of a row do not stand below the columns, "" when they do. Such a row becomes one text; in an answer,
/// where this text is the first field, it is refused for the same.
std::string DutyList::misfit(CsvRow& row) const
{
    std::vector<std::string>& fields = row.fields;
    const std::size_t count = fields.size();
    while (fields.size() > header_.given && fields.back().empty())
        fields.pop_back();
    std::string reason = fields.empty() ? brokenQuoting : fields.size() > header_.given ? tooManyFields(count) : "";
    if (fields.size() > header_.given)
        row.broken = csvText(fields, format_.separator);
    if (reason.empty() && commentsAt_ < fields.size()) {
        std::istringstream text(fields.front());
        CsvRow earlier;
        if (CsvReader(text, format_.separator).next(earlier))
            reason = earlier.fields.empty() ? brokenQuoting : tooManyFields(earlier.fields.size());
        if (reason != fields[commentsAt_])
            return "";
        row.broken = fields.front();
    }
    if (!reason.empty())
        fields.clear();
    return reason;
}

/// In a row of an answer, what the program had filled in is no entry, unless it was changed since.
void DutyList::emptyWhatWasFilledIn(std::vector<std::string>& fields) const
{
    if (filledInAt_ >= fields.size())
        return;
    const std::string& filledIn = fields[filledInAt_];
    for (const FilledColumn& filled : filledColumns()) {
        const std::size_t place = header_.places[filled.column];
        if (place >= fields.size() || trimmed(fields[place]).empty())
            continue;
        const std::string part = filledInPart(filled.column, trimmed(fields[place]));
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
    for (std::size_t column = 0; column < entries.size(); ++column) // a row may end early: what is missing is empty
        if (header_.places[column] < fields.size())
            entries[column] = fields[header_.places[column]];

    FreshSizing& sizing = duty.sizing.emplace(enteredOn(entries, header_, numbers_));
    noteTaken(entries, sizing);
    sizing.click(numbers_, store_);
    if (const std::string reason = store_.whyUnreadable(); !reason.empty())
        sizing.messages.show(reason);
    duty.status = !sizing.messages.texts.empty() ? SizedDuty::Status::failed
                  : sizing.screen.hasValve()     ? SizedDuty::Status::sized
                                                 : SizedDuty::Status::refused;
}

/// A default is taken for granted; a unit of the header is not, nor a gas by its gravity or a gravity by its gas.
void DutyList::noteTaken(const Entries& entries, const FreshSizing& sizing)
{
    constexpr std::size_t gravity = columnOf(Box::txtSpecGrav);
    constexpr std::size_t gas = columnOf(Box::cmbBlanketingGas);
    for (const FilledColumn& filled : filledColumns()) {
        const std::size_t column = filled.column;
        const bool isSaid = (column == columnOf(Choice::unitSystem) && header_.unit.system != nullptr) ||
                            (column == columnOf(Choice::pressUnits) && header_.unit.pressure != nullptr) ||
                            column == gravity || (column == gas && !trimmed(entries[gravity]).empty());
        if (!isSaid && trimmed(entries[column]).empty())
            ++taken_[column][filled.text(sizing)];
    }
}

std::vector<std::string> DutyList::notes() const
{
    std::vector<std::string> lines;
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
    if (!own.empty())
        lines.push_back("not of a duty and carried through: " + listed(own, ", "));
    return lines;
}

std::string DutyList::answerHeader() const
{
    std::vector<std::string> names;
    for (const ListHeader::Column& column : header_.columns)
        names.push_back(column.name);
    return (format_.byteOrderMark ? "\xEF\xBB\xBF" : "") + csvText(names, format_.separator) + format_.lineEnd;
}

std::string DutyList::answer(const SizedDuty& duty) const
{
    std::vector<std::string> fields = duty.row.fields;
    if (fields.empty())
        fields.push_back(duty.row.broken);
    fields.resize(header_.columns.size());
    std::string filledIn;
    for (const FilledColumn& filled : filledColumns()) {
        const std::size_t place = header_.places[filled.column];
        if (!duty.sizing || place == ListHeader::nowhere || !trimmed(fields[place]).empty())
            continue;
        if (std::string text = filled.text(*duty.sizing); !text.empty()) {
            filledIn += (filledIn.empty() ? "" : betweenParts);
            filledIn += filledInPart(filled.column, text);
            fields[place] = std::move(text);
        }
    }
    const std::string tables = tables_ ? tables_->label : "not labelled";
    const AnswerParts parts{duty, filledIn, tables};
    for (std::size_t at = 0; at < fields.size(); ++at)
        if (const ListHeader::Column& column = header_.columns[at]; column.kind == ListHeader::Kind::answer)
            fields[at] = answerColumns()[column.number].text(parts);
    return csvText(fields, format_.separator) + format_.lineEnd;
}

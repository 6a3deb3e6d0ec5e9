#include "lists/duty_list.h"

#include "base/failure.h"
#include "lists/duty_columns.h"
#include "lists/duty_entries.h"

#include <algorithm>
#include <stdexcept>

namespace
{

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

std::vector<std::string> columnNames()
{
    std::vector<std::string> names;
    for (const ListColumn& column : listColumns)
        names.emplace_back(column.name);
    return names;
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

    FreshSizing& sizing = duty.sizing.emplace(enteredOn(entries, numbers_));
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

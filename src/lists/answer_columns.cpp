#include "lists/answer_columns.h"

namespace
{

template <std::string SizingState::*field>
std::string_view stored(const FreshSizing& sizing)
{
    return sizing.state.*field;
}

template <Box box>
std::string_view entered(const FreshSizing& sizing)
{
    return sizing.screen.boxes.at(box);
}

constexpr FilledColumn filled[] = {
    {columnOf(Choice::valveModel), stored<&SizingState::ValveModel>},
    {columnOf(Choice::valveType), stored<&SizingState::ValveType>},
    {columnOf(Choice::sizingMethod), stored<&SizingState::SizingMethod>},
    {columnOf(Choice::unitSystem), stored<&SizingState::UnitSystem>},
    {columnOf(Choice::pressUnits), stored<&SizingState::PressUnits>},
    {columnOf(Box::cmbBlanketingGas), entered<Box::cmbBlanketingGas>},
    {columnOf(Box::txtSpecGrav), entered<Box::txtSpecGrav>},
};

constexpr const char* statusNames[] = {"sized", "refused", "failed"}; // in the order of SizedDuty::Status
static_assert(std::size(statusNames) == static_cast<std::size_t>(SizedDuty::Status::failed) + 1);

std::string statusOf(const AnswerParts& parts)
{
    return statusNames[static_cast<std::size_t>(parts.duty.status)];
}

template <Label label>
std::string captionOf(const AnswerParts& parts)
{
    return parts.duty.sizing ? parts.duty.sizing->screen.caption(label) : std::string();
}

template <std::string SizingState::*field>
std::string recorded(const AnswerParts& parts)
{
    return parts.duty.sizing ? parts.duty.sizing->state.*field : std::string();
}

std::string commentsOf(const AnswerParts& parts)
{
    return parts.duty.sizing ? captionOf<Label::lblComments>(parts) : parts.duty.reason;
}

std::string messagesOf(const AnswerParts& parts)
{
    std::vector<std::string> messages;
    if (parts.duty.sizing)
        messages = parts.duty.sizing->messages.texts;
    if (!parts.duty.summary.empty())
        messages.push_back(parts.duty.summary);
    std::string text;
    for (const std::string& message : messages)
        text += (text.empty() ? "" : " | ") + message;
    return text;
}

const AnswerColumn columns[] = {
    {"Pump Rate Units", recorded<&SizingState::PumpRateUnits>, Box::txtPumpRate},
    {"Tank Volume Units", recorded<&SizingState::VolUnits>, Box::txtTankVolume},
    {filledInName, [](const AnswerParts& parts) { return parts.filledIn; }, {}},
    {"Status", statusOf, {}},
    {"Pump-Rate Flow", captionOf<Label::lblPRFlow>, {}},
    {"Breathing Flow", captionOf<Label::lblBRFlow>, {}},
    {"Total Flow", captionOf<Label::lblTotalFlow>, {}},
    {"Flow Units", recorded<&SizingState::FlowUnits>, {}},
    {"Valve Coefficient", captionOf<Label::lblCV>, {}},
    {"Valve Body Size", captionOf<Label::lblValveBodySize>, {}},
    {"Max Valve Capacity", captionOf<Label::lblMaxValveCapacity>, {}},
    {"Capacity Utilized (%)", captionOf<Label::lblPercentValveCapacity>, {}},
    {commentsName, commentsOf, {}},
    {"Messages", messagesOf, {}},
    {"Tables", [](const AnswerParts& parts) { return parts.tables; }, {}},
};

} // namespace

std::span<const FilledColumn> filledColumns()
{
    return filled;
}

std::span<const AnswerColumn> answerColumns()
{
    return columns;
}

void addFilledIn(std::string& all, std::size_t column, std::string_view text)
{
    if (!all.empty())
        all += betweenParts;
    all += listColumns[column].name;
    all += ' ';
    all += text;
}

#include "lists/answer_columns.h"

namespace
{

const FilledColumn filled[] = {
    {columnOf(Choice::valveModel), [](const FreshSizing& sizing) { return sizing.state.ValveModel; }},
    {columnOf(Choice::valveType), [](const FreshSizing& sizing) { return sizing.state.ValveType; }},
    {columnOf(Choice::sizingMethod), [](const FreshSizing& sizing) { return sizing.state.SizingMethod; }},
    {columnOf(Choice::unitSystem), [](const FreshSizing& sizing) { return sizing.state.UnitSystem; }},
    {columnOf(Choice::pressUnits), [](const FreshSizing& sizing) { return sizing.state.PressUnits; }},
    {columnOf(Box::cmbBlanketingGas),
     [](const FreshSizing& sizing) { return sizing.screen.text(Box::cmbBlanketingGas); }},
    {columnOf(Box::txtSpecGrav), [](const FreshSizing& sizing) { return sizing.screen.text(Box::txtSpecGrav); }},
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
    std::string text;
    if (parts.duty.sizing)
        for (const std::string& message : parts.duty.sizing->messages.texts)
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

std::string filledInPart(std::size_t column, std::string_view text)
{
    return std::string(listColumns[column].name) + ' ' + std::string(text);
}

#include "report/print_command.h"

#include "app/sizing_state.h"
#include "base/main_screen.h"
#include "base/message_box.h"
#include "base/setup_choices.h"
#include "base/sizing_context.h"
#include "engine/required_flow.h"
#include "report/printers.h"

#include <exception>

std::optional<SummaryForm> summaryOfSizing(const SizingContext& sizing, const std::string& today)
{
    SizingState& state = sizing.state;
    if (sizing.screen.caption(Label::lblTotalFlow).empty() || !sizing.screen.hasValve()) {
        sizing.screen.setCaption(Label::lblComments, "You must size a valve before printing.");
        return std::nullopt;
    }
    // The stored material is judged afresh from the points of the last sizing.
    if (state.ValveType == choice::depad && asksFor(state.SizingCase, Box::txtFlashPoint))
        state.HighFlashBoil = isHighFlashBoil(state, sizing.screen, sizing.numbers);
    return SummaryForm(state, sizing.numbers, today, sizing.screen, sizing.messageBox);
}

PrintOutcome cmdPrint_Click(const SizingContext& sizing, const std::string& today, Printers& printers)
{
    try {
        const bool hasPrinter = printers.count() >= 1;
        if (!hasPrinter)
            sizing.messageBox.show("There is no printer installed on this computer.");
        sizing.screen.setPrintEnabled(hasPrinter);
        if (!hasPrinter)
            return {PrintOutcome::failed};
        const std::optional<SummaryForm> page = summaryOfSizing(sizing, today);
        if (!page)
            return {PrintOutcome::nothingSized};
        return {PrintOutcome::printed, printers.print(*page)};
    } catch (const std::exception&) {
        sizing.messageBox.show("cmdPrint: A printing error has occurred");
        return {PrintOutcome::failed};
    }
}

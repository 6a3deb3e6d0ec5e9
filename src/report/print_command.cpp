#include "report/print_command.h"

#include "app/sizing_state.h"
#include "base/main_screen.h"
#include "base/message_box.h"
#include "base/setup_choices.h"
#include "engine/required_flow.h"
#include "report/printers.h"

#include <exception>

std::optional<SummaryForm> summaryOfSizing(const SummaryContext& summary)
{
    SizingState& state = summary.state;
    if (summary.screen.caption(Label::lblTotalFlow).empty() || !summary.screen.hasValve()) {
        summary.screen.setCaption(Label::lblComments, "You must size a valve before printing.");
        return std::nullopt;
    }
    // The stored material is judged afresh from the points of the last sizing.
    if (state.ValveType == choice::depad && asksFor(state.SizingCase, Box::txtFlashPoint))
        state.HighFlashBoil = isHighFlashBoil(state, summary.screen, summary.numbers);
    return SummaryForm(state, summary.numbers, summary.today, summary.screen, summary.messageBox);
}

PrintOutcome cmdPrint_Click(const SummaryContext& summary, Printers& printers)
{
    try {
        const bool hasPrinter = printers.count() >= 1;
        if (!hasPrinter)
            summary.messageBox.show("There is no printer installed on this computer.");
        summary.screen.setPrintEnabled(hasPrinter);
        if (!hasPrinter)
            return PrintOutcome::failed;
        const std::optional<SummaryForm> page = summaryOfSizing(summary);
        if (!page)
            return PrintOutcome::nothingSized;
        printers.print(*page);
        return PrintOutcome::printed;
    } catch (const std::exception&) {
        summary.messageBox.show("cmdPrint: A printing error has occurred");
        return PrintOutcome::failed;
    }
}

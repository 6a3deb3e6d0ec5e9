#include "report/print_command.h"

#include "app/sizing_state.h"
#include "base/main_screen.h"
#include "base/message_box.h"
#include "base/offered.h"
#include "engine/required_flow.h"
#include "report/printers.h"
#include "report/summary_form.h"

#include <exception>

namespace
{

/// Judges the stored material afresh from the points of the last sizing.
void judgeFlashBoil(const PrintContext& print)
{
    SizingState& state = print.state;
    if (state.ValveType == choice::depad && state.SizingCase == sizing_case::depadApi2000)
        state.HighFlashBoil = isHighFlashBoil(state, print.screen, print.numbers);
}

void printSummary(const PrintContext& print)
{
    if (print.printers.count() < 1) {
        print.messageBox.show("There is no printer installed on this computer.");
        print.screen.setPrintEnabled(false);
        return;
    }
    print.screen.setPrintEnabled(true);
    if (print.screen.caption(Label::lblTotalFlow).empty() ||
        print.screen.caption(Label::lblPercentValveCapacity).empty()) {
        print.screen.setCaption(Label::lblComments, "You must size a valve before printing.");
        return;
    }
    judgeFlashBoil(print);
    print.printers.print(SummaryForm(print.state, print.numbers, print.today, print.screen, print.messageBox));
}

} // namespace

void cmdPrint_Click(const PrintContext& print)
{
    try {
        printSummary(print);
    } catch (const std::exception&) {
        print.messageBox.show("cmdPrint: A printing error has occurred");
    }
}

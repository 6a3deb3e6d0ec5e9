// What a click on "Prin&t" takes until the job stands in the queue of the default printer; every
// run prints. To have a queue that only keeps its jobs: tests/end_to_end/print_check.py --queue
// build/bin/print_benchmark

#include "app/sizing_state.h"
#include "base/number_text.h"
#include "base/sizing_context.h"
#include "capacity/capacity_store.h"
#include "engine/plain_screen.h"
#include "platform/printers.h"
#include "report/print_command.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace
{

SizingState sizedDepad()
{
    SizingState state;
    state.UnitSystem = "Metric";
    state.ValveType = "Depad";
    state.SizingCase = "Depad API-2000";
    state.FlashPoint = "60";
    state.CustomerName = "Example Refining";
    state.Comments =
        "If utilized valve capacity is greater than 80%, consider using the next larger valve capacity (Cv).";
    return state;
}

void print(benchmark::State& run)
{
    SizingState state = sizedDepad();
    PlainScreen screen;
    screen.boxes[Box::txtFlashPoint] = state.FlashPoint;
    RecordedMessages messages;
    const NumberText numbers;
    SystemPrinters printers;
    CapacityStore store("", numbers);
    const SizingContext context{state, screen, messages, numbers, store};
    for ([[maybe_unused]] const auto iteration : run) {
        screen.captions = {{Label::lblTotalFlow, "101"}, {Label::lblPercentValveCapacity, "96"}};
        cmdPrint_Click(context, "23 Nov 2026", printers);
        if (!messages.texts.empty()) {
            run.SkipWithError(messages.texts.front().c_str());
            break;
        }
    }
}

BENCHMARK(print)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

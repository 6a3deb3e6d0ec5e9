#pragma once

#include "report/printers.h"
#include "report/summary_form.h"

#include <optional>
#include <stdexcept>

/// Keeps the page that would be printed.
struct RecordingPrinters : Printers
{
    int installed = 1;
    bool broken = false;
    std::optional<SummaryForm> printed;

    PrintPage defaultPrinter() override
    {
        if (installed == 0)
            return {};
        return [this](const SummaryForm& page) {
            if (broken)
                throw std::runtime_error("broken");
            printed = page;
        };
    }
};

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

    int count() const override { return installed; }
    std::string print(const SummaryForm& page) override
    {
        if (broken)
            throw std::runtime_error("broken");
        printed = page;
        return "Laser_1";
    }
};

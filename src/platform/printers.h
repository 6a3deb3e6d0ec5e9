#pragma once

#include "report/printers.h"

/// The installed printers: CUPS queues, or those of Windows.
class SystemPrinters : public Printers
{
public:
    int count() const override;
    void print(const SummaryForm& page) override;
};

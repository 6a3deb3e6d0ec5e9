#pragma once

#include "report/printers.h"

/// The installed printers: CUPS queues, or those of Windows.
class SystemPrinters : public Printers
{
public:
    int count() const override;
    std::string print(const SummaryForm& page) override;

private:
    mutable long long timeLeft_ = 0; ///< milliseconds that count() has left for print() to wait (CUPS only)
};

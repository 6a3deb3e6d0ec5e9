#pragma once

#include "report/printers.h"

#include <QDeadlineTimer>

/// The installed printers: CUPS queues, or those of Windows.
class SystemPrinters : public Printers
{
public:
    int count() const override;
    void print(const SummaryForm& page) override;

private:
    mutable QDeadlineTimer deadline_; ///< of the press of "Prin&t" that counts and then prints (CUPS)
};

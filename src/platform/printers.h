#pragma once

#include "report/printers.h"

/// The installed printers: CUPS queues, or those of Windows.
class SystemPrinters : public Printers
{
public:
    PrintPage defaultPrinter() override;
};

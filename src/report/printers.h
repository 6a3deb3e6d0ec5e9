#pragma once

#include <functional>

class SummaryForm;

/// Prints a page as one job. Throws when the page cannot be painted and when the printing system does not take the job.
using PrintPage = std::function<void(const SummaryForm&)>;

/// The printers of the computer.
class Printers
{
public:
    virtual ~Printers() = default;

    /// Prints on the default printer (the first one where none is the default); empty where no printer is installed.
    /// Throws when the printing system fails or does not answer within some seconds.
    virtual PrintPage defaultPrinter() = 0;
};

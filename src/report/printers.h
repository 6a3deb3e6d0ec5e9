#pragma once

#include <string>

class SummaryForm;

/// The printers of the computer.
class Printers
{
public:
    virtual ~Printers() = default;

    /// How many are installed. Throws when the printing system does not answer within some seconds.
    virtual int count() const = 0;

    /// Prints the page as one job on the default printer (the first one where none is the default). Throws when the
    /// page cannot be painted and when the printing system does not take the job. Gives the name of the printer.
    virtual std::string print(const SummaryForm& page) = 0;
};

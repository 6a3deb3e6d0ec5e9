#pragma once

#include "report/summary_form.h"

#include <optional>
#include <string>

class Printers;
struct SizingContext;

/// The summary of the last sizing; `today` is the date in the user's short form. Nothing sized: nullopt, and
/// `lblComments` says so. Throws when the points of the stored material cannot be judged.
std::optional<SummaryForm> summaryOfSizing(const SizingContext& sizing, const std::string& today);

struct PrintOutcome
{
    enum
    {
        printed,
        nothingSized, ///< `lblComments` says so
        failed        ///< a message box has said so
    } kind;
    std::string printer = {}; ///< that has taken the page
};

/// One press of "Prin&t": prints the summary of the last sizing as one page. No printer: says so and disables the
/// button. Any failure ends in a message; the program stays usable.
PrintOutcome cmdPrint_Click(const SizingContext& sizing, const std::string& today, Printers& printers);

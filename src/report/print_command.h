#pragma once

#include "report/summary_form.h"

#include <optional>
#include <string>

class MainScreen;
class MessageBox;
class NumberText;
class Printers;
struct SizingState;

/// What a summary is made of.
struct SummaryContext
{
    SizingState& state;
    MainScreen& screen;
    MessageBox& messageBox;
    const NumberText& numbers;
    std::string today; ///< in the user's short date form
};

/// The summary of the last sizing; nullopt when nothing is sized, which `lblComments` says then. Throws when the points
/// of the stored material cannot be judged.
std::optional<SummaryForm> summaryOfSizing(const SummaryContext& summary);

enum class PrintOutcome
{
    printed,
    nothingSized, ///< `lblComments` says so
    failed        ///< a message box has said so
};

/// One press of "Prin&t": prints the summary of the last sizing as one page. No printer: says so and disables the
/// button. Any failure ends in a message; the program stays usable.
PrintOutcome cmdPrint_Click(const SummaryContext& summary, Printers& printers);

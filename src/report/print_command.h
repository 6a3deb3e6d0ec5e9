#pragma once

#include "report/summary_form.h"

#include <optional>
#include <string>

class Printers;
struct SizingContext;

/// What the comments say where nothing is sized.
inline constexpr const char* nothingSized = "You must size a valve before printing.";

/// The summary of the last sizing; `today` is the date in the user's short form. Nothing sized: says so in
/// `lblComments`. Throws when the points of the stored material cannot be judged.
std::optional<SummaryForm> summaryOfSizing(const SizingContext& sizing, const std::string& today);

/// One press of "Prin&t": prints the summary of the last sizing as one page. No printer: says so and disables the
/// button. Any failure ends in a message; the program stays usable.
void cmdPrint_Click(const SizingContext& sizing, const std::string& today, Printers& printers);

#pragma once

#include <string>

class SummaryForm;

/// The summary as a PDF file's bytes, the very page that is printed, on the paper of the user's country. Throws when it
/// cannot be painted. Wants a QGuiApplication, for the fonts.
std::string summaryPdf(const SummaryForm& page);

#pragma once

#include "capacity/tables_label.h"

#include <QPageSize>

#include <string>

class QPageLayout;
class SummaryForm;

/// Lets summaries be painted where there is no display. Before the application's object is made.
void paintWithoutDisplay();

/// The summary as a PDF file's bytes, the very page that is printed, on the paper of the user's country. Throws when it
/// cannot be painted. Its properties name the tables that it was sized on. Wants a QGuiApplication, for the fonts.
std::string summaryPdf(const SummaryForm& page, const std::optional<TablesLabel>& tables);

/// The same on other paper; its properties name the program only.
std::string summaryPdfOn(const QPageLayout& paper, const SummaryForm& page);

/// The paper of the user's country.
QPageSize usersPaper();

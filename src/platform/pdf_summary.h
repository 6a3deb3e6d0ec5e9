#pragma once

#include "capacity/tables_label.h"

#include <QPageSize>

#include <string>

class QPageLayout;
class SummaryForm;

/// Lets summaries be painted where there is no display. Call it before the application object is made.
void paintWithoutDisplay();

/// The bytes of a PDF file with the summary, painted as it is printed, on the paper of the user's country. Throws
/// when it cannot be painted. The properties of the file name the tables that the valve was sized on. Needs a
/// QGuiApplication, for the fonts.
std::string summaryPdf(const SummaryForm& page, const std::optional<TablesLabel>& tables);

/// The same on other paper; its properties name the program only.
std::string summaryPdfOn(const QPageLayout& paper, const SummaryForm& page);

/// The paper of the user's country.
QPageSize usersPaper();

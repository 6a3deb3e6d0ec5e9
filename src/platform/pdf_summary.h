#pragma once

#include "capacity/tables_label.h"

#include <QPageLayout>
#include <QString>

#include <string>

class SummaryForm;

/// Lets summaries be painted where there is no display. Before the application's object is made.
void paintWithoutDisplay();

/// The paper of the user's country.
QPageLayout userPaper();

/// The summary on the given paper, as the bytes of a PDF. Throws when it cannot be painted. Wants a QGuiApplication,
/// for the fonts.
std::string pagePdf(const SummaryForm& page, const QPageLayout& paper, const QString& creator = {});

/// The very page that is printed, on the paper of the user's country. Its properties name the tables that it was sized
/// on.
std::string summaryPdf(const SummaryForm& page, const std::optional<TablesLabel>& tables);

#include "platform/pdf_summary.h"

#include "platform/summary_painter.h"
#include "report/summary_form.h"

#include <QBuffer>
#include <QLocale>
#include <QPageLayout>
#include <QPdfWriter>

namespace
{

/// The bytes of the PDF; what made it follows the program's name in its properties.
std::string pdfOn(const QPageLayout& paper, const SummaryForm& page, const std::string& madeWith)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setPageLayout(paper);
        writer.setTitle(QString::fromUtf8(SummaryForm::caption));
        writer.setCreator(QStringLiteral("Halvor-ORM Blanketing Valve Sizing " SIZING_VERSION) +
                          QString::fromStdString(madeWith));
        paintSummary(page, writer);
    } // complete when the writer is gone
    return buffer.data().toStdString();
}

} // namespace

void paintWithoutDisplay()
{
#ifndef Q_OS_WIN // where there always is one
    qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
}

QPageSize usersPaper()
{
    const bool hasLetter = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return QPageSize(hasLetter ? QPageSize::Letter : QPageSize::A4);
}

std::string summaryPdf(const SummaryForm& page, const std::optional<TablesLabel>& tables)
{
    const std::string label = tables ? describe(*tables) : "not labelled";
    return pdfOn({usersPaper(), QPageLayout::Portrait, {}}, page, ", capacities: " + label);
}

std::string summaryPdfOn(const QPageLayout& paper, const SummaryForm& page)
{
    return pdfOn(paper, page, "");
}

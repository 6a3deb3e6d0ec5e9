#include "platform/pdf_summary.h"

#include "platform/summary_painter.h"
#include "report/summary_form.h"

#include <QBuffer>
#include <QLocale>
#include <QPdfWriter>

void paintWithoutDisplay()
{
#ifndef Q_OS_WIN // where there always is one
    qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
}

QPageLayout userPaper()
{
    const bool hasLetter = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return {QPageSize(hasLetter ? QPageSize::Letter : QPageSize::A4), QPageLayout::Portrait, {}};
}

std::string pagePdf(const SummaryForm& page, const QPageLayout& paper, const QString& creator)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setPageLayout(paper);
        writer.setTitle(QString::fromUtf8(SummaryForm::caption));
        writer.setCreator(creator);
        paintSummary(page, writer);
    } // complete when the writer is gone
    return buffer.data().toStdString();
}

std::string summaryPdf(const SummaryForm& page, const std::optional<TablesLabel>& tables)
{
    const std::string label = tables ? describe(*tables) : "not labelled";
    return pagePdf(page, userPaper(),
                   QStringLiteral("Halvor-ORM Blanketing Valve Sizing " SIZING_VERSION ", capacities: ") +
                       QString::fromStdString(label));
}

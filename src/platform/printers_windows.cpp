#include "platform/printers.h"

#include "platform/summary_painter.h"
#include "report/summary_form.h"

#include <QPrinter>
#include <QPrinterInfo>

#include <stdexcept>

int SystemPrinters::count() const
{
    return static_cast<int>(QPrinterInfo::availablePrinterNames().size());
}

std::string SystemPrinters::print(const SummaryForm& page)
{
    const QString standard = QPrinterInfo::defaultPrinterName();
    const QString name = standard.isEmpty() ? QPrinterInfo::availablePrinterNames().value(0) : standard;
    if (name.isEmpty())
        throw std::runtime_error("no printer");
    const QPrinterInfo info = QPrinterInfo::printerInfo(name);
    QPrinter printer(info, QPrinter::HighResolution);
    if (const QPageSize paper = info.defaultPageSize(); paper.isValid())
        printer.setPageSize(paper); // left alone, it has the paper of the user's country
    printer.setFullPage(true);
    printer.setPageOrientation(QPageLayout::Portrait);
    printer.setColorMode(QPrinter::Color); // a printer without colours makes its own greys of the pictures
    printer.setDocName(QString::fromUtf8(SummaryForm::caption));
    paintSummary(page, printer);
    if (printer.printerState() == QPrinter::Error)
        throw std::runtime_error("the printer failed");
    return name.toStdString();
}

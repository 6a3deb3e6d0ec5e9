#include "platform/printers.h"

#include <QPrinter>
#include <QPrinterInfo>

#include <stdexcept>

#ifndef Q_OS_WIN

#include <cups/cups.h>

#include <QDir>
#include <QTemporaryFile>

#include <memory>

#endif

namespace
{

QString defaultOrFirstPrinter()
{
    const QString name = QPrinterInfo::defaultPrinterName();
    if (!name.isEmpty())
        return name;
    const QStringList names = QPrinterInfo::availablePrinterNames();
    if (names.isEmpty())
        throw std::runtime_error("no printer");
    return names.first();
}

#ifdef Q_OS_WIN

void printOn(QPrinter& printer, const std::function<void(QPrinter&)>& paint)
{
    paint(printer);
    if (printer.printerState() == QPrinter::Error)
        throw std::runtime_error("the printer failed");
}

#else

/// Hands a file to a queue, with the options the user keeps for it ("queue/instance" for a second set of them).
void submit(const QString& printer, const QString& title, const QString& file)
{
    // No question for a password on a terminal that nobody sees.
    cupsSetPasswordCB2([](const char*, http_t*, const char*, const char*, void*) -> const char* { return nullptr; },
                       nullptr);
    const QByteArray queue = printer.section(u'/', 0, 0).toUtf8();
    const QByteArray instance = printer.section(u'/', 1).toUtf8();
    const auto release = [](cups_dest_t* destination) { cupsFreeDests(1, destination); };
    const std::unique_ptr<cups_dest_t, decltype(release)> destination(
        cupsGetNamedDest(CUPS_HTTP_DEFAULT, queue.constData(), instance.isEmpty() ? nullptr : instance.constData()));
    if (!destination || cupsPrintFile(queue.constData(), file.toLocal8Bit().constData(), title.toUtf8().constData(),
                                      destination->num_options, destination->options) == 0)
        throw std::runtime_error("the queue did not take the job");
}

/// Qt reports nothing of a job that the queue refuses. So the page goes to a file first and then to the queue here.
void printOn(QPrinter& printer, const std::function<void(QPrinter&)>& paint)
{
    QTemporaryFile page(QDir::tempPath() + QStringLiteral("/sizing-summary-XXXXXX"));
    if (!page.open())
        throw std::runtime_error("no room for the page");
    printer.setOutputFileName(page.fileName());
    paint(printer);
    submit(printer.printerName(), printer.docName(), page.fileName());
}

#endif

} // namespace

int SystemPrinters::count() const
{
    return static_cast<int>(QPrinterInfo::availablePrinterNames().size());
}

void SystemPrinters::print(const QString& title, const std::function<void(QPrinter&)>& paint)
{
    QPrinter printer(QPrinterInfo::printerInfo(defaultOrFirstPrinter()), QPrinter::HighResolution);
    printer.setDocName(title);
    printOn(printer, paint);
}

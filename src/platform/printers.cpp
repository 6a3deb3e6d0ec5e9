#include "platform/printers.h"

#include "platform/summary_painter.h"
#include "report/summary_form.h"

#include <QPrinter>
#include <QPrinterInfo>

#include <stdexcept>

#ifndef Q_OS_WIN

#include <cups/cups.h>

#include <QDir>
#include <QTemporaryFile>

#include <chrono>
#include <future>
#include <memory>
#include <thread>

#endif

namespace
{

#ifdef Q_OS_WIN

void awaitPrintingSystem() {}

QString defaultPrinter()
{
    return QPrinterInfo::defaultPrinterName();
}

void printOn(QPrinter& printer, const SummaryForm& page)
{
    paintSummary(page, printer);
    if (printer.printerState() == QPrinter::Error)
        throw std::runtime_error("the printer failed");
}

#else

struct FreeDestination
{
    void operator()(cups_dest_t* destination) const { cupsFreeDests(1, destination); }
};
using Destination = std::unique_ptr<cups_dest_t, FreeDestination>;

constexpr std::chrono::seconds patience{5};

/// Asks the scheduler a question; false when that gets no answer. Without a scheduler there is nothing to wait for.
bool schedulerAnswers()
{
    const int connectWait =
        static_cast<int>(std::chrono::milliseconds(2 * patience).count()); // longer than anyone waits
    const std::unique_ptr<http_t, decltype(&httpClose)> scheduler(
        httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, connectWait, nullptr),
        httpClose);
    if (!scheduler)
        return true;
    httpSetTimeout(
        scheduler.get(), static_cast<double>(patience.count()), [](http_t*, void*) { return 0; }, nullptr);
    const std::unique_ptr<ipp_t, decltype(&ippDelete)> answer(
        cupsDoRequest(scheduler.get(), ippNewRequest(IPP_OP_CUPS_GET_DEFAULT), "/"), ippDelete);
    return answer != nullptr;
}

/// A scheduler that accepts and says nothing, or talks on and on, would hold the window for minutes. So it is asked
/// beside the window first, and given up.
void awaitPrintingSystem()
{
    const auto answers = std::make_shared<std::promise<bool>>();
    std::future<bool> outcome = answers->get_future();
    std::thread([answers] { answers->set_value(schedulerAnswers()); }).detach();
    if (outcome.wait_for(patience) != std::future_status::ready || !outcome.get())
        throw std::runtime_error("the printing system does not answer");
}

/// Qt would list all printers a second time for this, which may wait for the network.
QString defaultPrinter()
{
    const Destination destination(cupsGetNamedDest(CUPS_HTTP_DEFAULT, nullptr, nullptr));
    if (!destination)
        return {};
    const QString queue = QString::fromUtf8(destination->name);
    return destination->instance == nullptr ? queue : queue + u'/' + QString::fromUtf8(destination->instance);
}

/// Hands a file to a printer, a queue or "queue/instance", with the options that the user keeps for it.
void submit(const QString& printer, const QString& title, const QString& file)
{
    // No question for a password on a terminal that nobody sees.
    cupsSetPasswordCB2([](const char*, http_t*, const char*, const char*, void*) -> const char* { return nullptr; },
                       nullptr);
    const QByteArray queue = printer.section(u'/', 0, 0).toUtf8();
    const QByteArray instance = printer.section(u'/', 1).toUtf8();
    const Destination destination(
        cupsGetNamedDest(CUPS_HTTP_DEFAULT, queue.constData(), instance.isEmpty() ? nullptr : instance.constData()));
    if (!destination || cupsPrintFile(queue.constData(), file.toLocal8Bit().constData(), title.toUtf8().constData(),
                                      destination->num_options, destination->options) == 0)
        throw std::runtime_error("the queue did not take the job");
}

/// Qt reports nothing of a job that the queue refuses. So the page goes to a file first and then to the queue here. The
/// file has no name, so that nothing stays behind when the program is ended in between.
void printOn(QPrinter& printer, const SummaryForm& page)
{
    QTemporaryFile file(QDir::tempPath() + QStringLiteral("/sizing-summary-XXXXXX"));
    if (!file.open())
        throw std::runtime_error("no room for the page");
    const QString name = QStringLiteral("/proc/self/fd/%1").arg(file.handle());
    printer.setOutputFileName(name);
    paintSummary(page, printer);
    // Nor does it say that the disk was full.
    if (!file.readAll().trimmed().endsWith("%%EOF"))
        throw std::runtime_error("no room for the page");
    submit(printer.printerName(), printer.docName(), name);
}

#endif

QString defaultOrFirstPrinter()
{
    if (QString name = defaultPrinter(); !name.isEmpty())
        return name;
    const QStringList names = QPrinterInfo::availablePrinterNames();
    if (names.isEmpty())
        throw std::runtime_error("no printer");
    return names.first();
}

} // namespace

int SystemPrinters::count() const
{
    awaitPrintingSystem();
    return static_cast<int>(QPrinterInfo::availablePrinterNames().size());
}

void SystemPrinters::print(const SummaryForm& page)
{
    const QPrinterInfo info = QPrinterInfo::printerInfo(defaultOrFirstPrinter());
    QPrinter printer(info, QPrinter::HighResolution);
    if (const QPageSize paper = info.defaultPageSize(); paper.isValid())
        printer.setPageSize(paper); // left alone, it has the paper of the user's country
    printer.setFullPage(true);
    printer.setPageOrientation(QPageLayout::Portrait);
    printer.setColorMode(QPrinter::Color); // a printer without colours makes its own greys of the pictures
    printer.setDocName(QString::fromUtf8(SummaryForm::caption));
    printOn(printer, page);
}

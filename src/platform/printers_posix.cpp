// Only a small program of its own, print_queue, talks with the print scheduler. When the scheduler is silent or never
// stops, only that program waits; it is ended when it is late.

#include "platform/printers.h"

#include "platform/pdf_summary.h"
#include "platform/print_queue.h"
#include "report/summary_form.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QPageLayout>
#include <QProcess>
#include <QSizeF>

#include <chrono>
#include <stdexcept>

namespace
{

/// print_queue at work. Whatever does not come in time ends in an exception, and the program with it.
class PrintQueue
{
public:
    PrintQueue(const QStringList& arguments, const QDeadlineTimer& deadline) : deadline_(deadline)
    {
        program_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program_.start(QCoreApplication::applicationDirPath() + QStringLiteral("/print_queue"), arguments);
    }

    ~PrintQueue()
    {
        program_.kill(); // it has nothing left to do, or is late
        program_.waitForFinished();
    }

    QList<QByteArray> answer()
    {
        while (!program_.canReadLine())
            if (!program_.waitForReadyRead(timeLeft()))
                throw std::runtime_error("the printing system does not answer");
        return program_.readLine().trimmed().split(' ');
    }

    /// Hands over what is to be printed, with its size first, so that a part of it is never taken for the whole. Gives
    /// the name of the queue that has taken it.
    std::string send(const std::string& bytes)
    {
        program_.write(QByteArray::number(static_cast<qsizetype>(bytes.size())) + '\n');
        program_.write(bytes.data(), static_cast<qint64>(bytes.size()));
        program_.closeWriteChannel();
        if (!program_.waitForFinished(timeLeft()) || program_.exitStatus() != QProcess::NormalExit ||
            program_.exitCode() != 0)
            throw std::runtime_error("the queue did not take the job");
        return program_.readAllStandardOutput().trimmed().toStdString();
    }

private:
    int timeLeft() const { return static_cast<int>(deadline_.remainingTime()); }

    const QDeadlineTimer& deadline_;
    QProcess program_;
};

/// The queue's paper and its printable part; where the queue tells none, the paper of the user's country.
QPageLayout paperOf(const QList<QByteArray>& answer)
{
    const auto points = [&](int at) { return answer.value(at).toInt() * 72 / 2540.0; }; // from 1/100 mm
    const QPageSize size = answer.size() < 6 ? usersPaper() : QPageSize(QSizeF(points(0), points(1)), QPageSize::Point);
    QPageLayout paper(size, QPageLayout::Portrait, {});
    paper.setMode(QPageLayout::FullPageMode);
    paper.setUnits(QPageLayout::Point);
    paper.setMinimumMargins({points(2), points(3), points(4), points(5)});
    return paper;
}

} // namespace

int SystemPrinters::count() const
{
    const QDeadlineTimer deadline(std::chrono::seconds{printPatience});
    const int found = PrintQueue({QStringLiteral("count")}, deadline).answer().value(0).toInt();
    timeLeft_ = deadline.remainingTime(); // a message that the user reads in between takes none of it
    return found;
}

std::string SystemPrinters::print(const SummaryForm& page)
{
    const QDeadlineTimer deadline(timeLeft_);
    PrintQueue queue({QStringLiteral("print"), QString::fromUtf8(SummaryForm::caption)}, deadline);
    return queue.send(summaryPdfOn(paperOf(queue.answer()), page));
}

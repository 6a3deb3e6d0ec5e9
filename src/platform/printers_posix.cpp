#include "platform/printers.h"

#include "platform/pdf_summary.h"
#include "report/summary_form.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPageLayout>
#include <QProcess>
#include <QSizeF>

#include <algorithm>
#include <array>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace
{

constexpr int patience = 5000; // milliseconds that one press of "Print" waits for the print scheduler, all in all

void end(QProcess* program)
{
    program->kill();
    program->waitForFinished();
    delete program;
}

/// The paper as `print_queue` tells it; that of the user's country where the printer says nothing of paper.
QPageLayout readPaper(const QByteArray& answer)
{
    std::istringstream words(answer.toStdString());
    std::array<double, 6> lengths{}; // width, height, margins at left, top, right and foot
    for (double& length : lengths) {
        words >> length;
        length /= 100; // of hundredths of a millimetre
    }
    if (!words)
        throw std::runtime_error("the printing system does not answer");
    const auto [width, height, left, top, right, foot] = lengths;
    if (std::min(width, height) <= 0)
        return userPaper();
    QPageLayout paper(QPageSize(QSizeF(width, height), QPageSize::Millimeter), QPageLayout::Portrait, {},
                      QPageLayout::Millimeter, {left, top, right, foot});
    paper.setMode(QPageLayout::FullPageMode);
    return paper;
}

} // namespace

/// A scheduler that stops answering can hold who talks with it for minutes. So `print_queue` does that, and is ended
/// when it is late.
PrintPage SystemPrinters::defaultPrinter()
{
    const std::shared_ptr<QProcess> program(new QProcess, end);
    QElapsedTimer waiting;
    waiting.start();
    program->start(QCoreApplication::applicationDirPath() + QStringLiteral("/print_queue"),
                   {QString::number(QCoreApplication::applicationPid()), QString::fromUtf8(SummaryForm::caption)});
    program->waitForReadyRead(patience);
    const QByteArray answer = program->readAll();
    if (answer == "none\n")
        return {};
    const int left = std::max(0, patience - static_cast<int>(waiting.elapsed())); // -1 waits without an end
    return [program, left, paper = readPaper(answer)](const SummaryForm& page) {
        program->write(QByteArray::fromStdString(pagePdf(page, paper)));
        program->closeWriteChannel();
        if (!program->waitForFinished(left) || program->exitStatus() != QProcess::NormalExit ||
            program->exitCode() != 0)
            throw std::runtime_error("the queue did not take the job");
    };
}

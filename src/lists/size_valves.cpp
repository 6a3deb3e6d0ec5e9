#include "files/system.h"
#include "lists/size_command.h"
#include "platform/about.h"
#include "platform/pdf_summary.h"
#include "platform/user_locale.h"

#include <QGuiApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    holdStandardStreams();
    // What Qt warns of is nothing that a user of a list could mend; what ends the program must be said.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "size_valves: %s\n", qPrintable(text));
    });
    // The fonts of the summaries want an application with windows, but no display. The arguments are not Qt's.
    paintWithoutDisplay();
    int count = 1;
    char* program[] = {argv[0], nullptr};
    const QGuiApplication application(count, program);
    const std::string directory = QCoreApplication::applicationDirPath().toStdString();
    const std::string dataFile = directory + "/capacities.mdb";
    const VerificationPlace place = {directory + "/verification", dataFile,   systemName(), userLocaleName(),
                                     hasDecimalComma(),           userToday()};
    return sizeValves({argv + 1, argv + argc},
                      {dataFile, summaryPdf, userToday(), [&] { return verifyProgram(place); }});
}

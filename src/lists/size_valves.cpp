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
    // A user of lists cannot do anything about Qt's warnings. Only a message that ends the program is written.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "size_valves: %s\n", qPrintable(text));
    });
    // The fonts of the summaries need a QGuiApplication, but no display. Qt must not read the arguments.
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

#include "app/form_layout.h"
#include "app/screens.h"
#include "files/system.h"
#include "platform/printers.h"
#include "platform/qt_message_box.h"
#include "platform/user_locale.h"

#include <QApplication>
#include <QIcon>
#include <QTimer>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("blanketing-valve-sizing"));
    QApplication::setDesktopFileName(QStringLiteral("blanketing-valve-sizing"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/blanketing-valve-sizing.png")));
    // The forms have fixed positions: one style on every desktop, so that what fits here fits there.
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(screenColours());

    QtMessageBox messageBox;
    const QString directory = QCoreApplication::applicationDirPath();
    SystemPrinters printers;
    Screens screens(userLocale(), messageBox, printers, (directory + QStringLiteral("/capacities.mdb")).toStdString());
    screens.showSetup();

    // The end of a session ends a list that is being sized as Cancel does, so that no half of an answer stays.
    constexpr int patience = 200; // milliseconds
    QTimer interruptions;
    QObject::connect(&interruptions, &QTimer::timeout, [] {
        if (isInterrupted())
            QApplication::exit();
    });
    prepareConsole();
    interruptions.start(patience);
    return QApplication::exec();
}

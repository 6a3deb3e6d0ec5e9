#include "platform/about.h"

#include "base/message_box.h"
#include "base/number_text.h"
#include "capacity/capacity_store.h"
#include "capacity/tables_label.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSysInfo>
#include <QUrl>

#include <sqlite3.h>

namespace
{

/// What of the system's side comes with the program.
#ifdef Q_OS_WIN
constexpr const char* systemsLibraries =
    "libcsv: GNU Lesser General Public License 2.1; the compiler's runtime: GNU General Public License 3 with its "
    "exception for programs. The texts stand in the directory licences, beside the program.";
#else
constexpr const char* systemsLibraries = "CUPS: Apache License 2.0, https://www.apache.org/licenses/";
#endif

/// What the tables are, or why nothing is known of them.
std::string describeTables(const std::string& dataFile)
{
    const NumberText numbers;
    CapacityStore store(dataFile, numbers); // not that of the sizings, whose click this is not
    const std::optional<TablesLabel> label = tablesLabel(store);
    const std::string reason = store.whyUnreadable();
    return label ? describe(*label) : reason.empty() ? "not labelled" : reason;
}

} // namespace

void showAbout(MessageBox& messageBox, const std::string& dataFile)
{
    const QFileInfo file(QString::fromStdString(dataFile));
    const QString since = file.exists() ? QLocale::system().toString(file.lastModified(), QLocale::ShortFormat)
                                        : QStringLiteral("missing");
    const std::string tables = describeTables(dataFile);
    const QString text = QStringLiteral("Halvor-ORM Blanketing Valve Sizing, version " SIZING_VERSION "\n\n"
                                        "Valve capacities: %1\n"
                                        "Data file: %2 (%3)\n\n"
                                        "This program uses\n"
                                        "Qt %4: GNU Lesser General Public License 3, https://www.gnu.org/licenses/\n"
                                        "SQLite %5: public domain, https://sqlite.org/copyright.html\n"
                                        "%6")
                             .arg(QString::fromStdString(tables), QDir::toNativeSeparators(file.absoluteFilePath()),
                                  since, QString::fromLatin1(qVersion()), QString::fromLatin1(sqlite3_libversion()),
                                  QString::fromLatin1(systemsLibraries));
    messageBox.show(text.toStdString());
}

std::string systemName()
{
    return (QSysInfo::prettyProductName() + QStringLiteral(", ") + QSysInfo::currentCpuArchitecture()).toStdString();
}

void openUserGuide(MessageBox& messageBox)
{
    // Installed it is HTML; in the build tree, the file of the source. Both are links: the pictures stand at the
    // target.
    QString guide;
    for (const char* const name : {"user_guide.md", "user_guide.html"}) {
        const QString found =
            QFileInfo(QDir(QCoreApplication::applicationDirPath()).filePath(QString::fromLatin1(name)))
                .canonicalFilePath();
        if (!found.isEmpty())
            guide = found;
    }
    if (guide.isEmpty())
        messageBox.show("The user guide is not installed.");
    else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(guide)))
        messageBox.show("No program opens the user guide: " + QDir::toNativeSeparators(guide).toStdString());
}

#include "gui/main_form_fixture.h"

#include "app/announcer.h"
#include "support/full_disk.h"
#include "support/temporary_directory.h"

#include <QFileDialog>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QSettings>

#include <sqlite3.h>

#include <fstream>

namespace
{

class SummaryTest : public MainFormTest
{
protected:
    /// Presses Ctrl+S in a control; names the file where it is asked for, and gives whether it was.
    bool pressCtrlS(const char* control)
    {
        bool isAsked = false;
        QTimer::singleShot(0, &get<QWidget>(control), [&] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr)
                return;
            isAsked = true;
            dialog->setOption(QFileDialog::DontConfirmOverwrite);
            dialog->selectFile(file);
            QMetaObject::invokeMethod(dialog, "accept");
        });
        get<QWidget>(control).setFocus();
        key(Qt::Key_S, Qt::ControlModifier);
        QCoreApplication::processEvents();
        return isAsked;
    }

    /// Makes the data file the tables of the tests, changed by SQL.
    void putTables(const std::string& sql) const
    {
        std::filesystem::copy_file(testTables(), dataFile, std::filesystem::copy_options::overwrite_existing);
        sqlite3* database = nullptr;
        sqlite3_open(dataFile.string().c_str(), &database);
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(database);
    }

    /// Expects that the form tells why the figures on it may be wrong, after `said`, and saves no summary of them.
    void expectTrouble(const std::string& reason, const std::string& said)
    {
        EXPECT_EQ(get<QLabel>("lblComments").toolTip().toStdString(), reason);
        EXPECT_TRUE(bubbleText().contains(QString::fromStdString(reason)));
        const std::string announced = screens.form()->findChild<Announcer*>()->accessibleName().toStdString();
        EXPECT_TRUE(announced.ends_with(said + ' ' + reason + '.')) << announced;
        get<QWidget>("txtStoredMaterial").setFocus();
        key(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_TRUE(QApplication::clipboard()->text().contains(QString::fromStdString("Data File\t" + reason + "\n")));
        EXPECT_FALSE(pressCtrlS("txtStoredMaterial"));
        EXPECT_EQ(messages.texts, std::vector<std::string>{"The summary is not saved: " + reason});
        messages.texts.clear();
    }

    const TemporaryDirectory temporary;
    const QString directory = QString::fromStdString(temporary.path.string());
    const QString file = directory + "/TK-1";
};

TEST_F(SummaryTest, IsSavedAndResultsAreCopied)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, directory);
    openDepad();
    const char* const refusal = "You must size a valve before printing.";
    press("cmdPrint");
    EXPECT_EQ(screens.form()->findChild<Announcer*>()->accessibleName(), refusal);
    get<QLabel>("lblComments").clear();
    EXPECT_FALSE(pressCtrlS("cmdExit"));
    EXPECT_EQ(shown("lblComments"), refusal);
    sizeDepad();
    EXPECT_FALSE(pressCtrlS("txtPumpRate")) << "beeps, like every letter";
    EXPECT_TRUE(pressCtrlS("txtStoredMaterial"));
    QFile saved(file + ".pdf");
    EXPECT_TRUE(saved.open(QIODevice::ReadOnly));
    const QByteArray pdf = saved.readAll();
    EXPECT_TRUE(pdf.startsWith("%PDF"));
    saved.close();

    activate();
    {
        const FullDisk disk(20'000);
        EXPECT_TRUE(pressCtrlS("txtStoredMaterial"));
    }
    EXPECT_EQ(messages.texts, std::vector<std::string>{"The summary is not saved: File too large"});
    EXPECT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_TRUE(saved.readAll() == pdf);
    EXPECT_EQ(QDir(directory).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList("TK-1.pdf"))
        << "and nothing else";

    activate();
    const auto copied = [this] {
        key(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
        return QApplication::clipboard()->text().toStdString();
    };
    for (const char* const line : {"Pump-In Rate\t50\tm3/Hr\n", "Outbreathing Flow\t5\tNm3/Hr\n",
                                   "Valve Coefficient\t3\n", "\nS.G.Gas.\t1.00\n"})
        EXPECT_NE(copied().find(line), std::string::npos) << copied();
    for (const std::string formula : {"=1+1", "+1", "-1", "@A1"}) { // no spreadsheet works that out
        set("txtStoredMaterial", formula);
        EXPECT_NE(copied().find("\t " + formula + '\n'), std::string::npos) << copied();
    }
    set("txtPumpRate", "51");
    EXPECT_EQ(copied().find("S.G.Gas."), std::string::npos) << "a gravity without its capacity";
}

TEST_F(SummaryTest, NamesTheTablesThatWereSizedOn)
{
    const auto put = [&](const std::string& label) {
        putTables("CREATE TABLE Label (label, date); INSERT INTO Label VALUES ('" + label + "', 'today')");
    };
    put("tables A");
    openDepad();
    sizeDepad();
    put("tables B");
    screens.form()->actions().last()->trigger();
    for (const std::string& line : std::initializer_list<std::string>{
             "Sizing, version " SIZING_VERSION "\n", "\nValve capacities: tables B (today)\n",
             "\nData file: " + dataFile.string() + " (", "\nQt " + std::string(qVersion()),
             "\nSQLite " + std::string(sqlite3_libversion())})
        EXPECT_NE(messages.texts.back().find(line), std::string::npos) << line << messages.texts.back();
    EXPECT_TRUE(pressCtrlS("txtStoredMaterial"));
    QFile saved(file + ".pdf");
    EXPECT_TRUE(saved.open(QIODevice::ReadOnly));
    const QByteArray page = saved.readAll();
    for (const char* const property :
         {"ORM - Valve Sizing Summary",
          "Halvor-ORM Blanketing Valve Sizing " SIZING_VERSION ", capacities: tables A "}) {
        const QByteArray stored = QStringEncoder(QStringEncoder::Utf16BE).encode(QString::fromLatin1(property));
        EXPECT_TRUE(page.contains(stored)) << property;
    }
}

/// The report of the verification list stands over the form, and leaves it as it was.
TEST_F(SummaryTest, VerifyShowsItsReportAndTakesNoKey)
{
    openDepad();
    sizeDepad();
    get<QLineEdit>("txtStoredMaterial").setFocus();
    QAction* verify = nullptr;
    for (QAction* const action : screens.form()->actions())
        verify = action->text() == QStringLiteral("&Verify...") ? action : verify;
    ASSERT_NE(verify, nullptr);
    EXPECT_TRUE(verify->shortcut().isEmpty());
    verify->trigger();
    const QPointer<QWidget> dialog = QApplication::activeModalWidget();
    ASSERT_FALSE(dialog.isNull());
    const QString report = dialog->findChild<QPlainTextEdit*>()->toPlainText();
    const std::string data = dataFile.string() + "\n                       not labelled, without checksum\n";
    EXPECT_TRUE(report.contains(QString::fromStdString(data))) << report.toStdString();
    EXPECT_TRUE(QRegularExpression(QStringLiteral("\n(\\d+) of \\1 duties agree\n")).match(report).hasMatch())
        << report.toStdString();
    for (QPushButton* const button : dialog->findChildren<QPushButton*>())
        if (button->text() == QStringLiteral("&Copy"))
            button->click();
    EXPECT_EQ(QApplication::clipboard()->text(), report);
    EXPECT_TRUE(bubbleText().contains("Report copied."));
    QTest::keyClick(dialog, Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(dialog.isNull());
    activate();
    type("Oil");
    EXPECT_EQ(entered("txtStoredMaterial"), "Oil");
    EXPECT_EQ(shown("lblCV"), "3") << "the sizing stands";
}

/// Beside the stated refusal or a figure that may be wrong, until a click can read the file again.
TEST_F(SummaryTest, IsNotMadeWhereTheDataFileCannotBeRead)
{
    openDepad();
    sizeDepad();
    std::filesystem::resize_file(dataFile, 100);
    press("cmdCalcFlowRate");
    expectTrouble("capacities.mdb is damaged: database disk image is malformed", "pressure.");
    std::filesystem::copy_file(testTables(), dataFile, std::filesystem::copy_options::overwrite_existing);
    sizeDepad();
    EXPECT_EQ(get<QLabel>("lblComments").toolTip(), "");

    putTables("DROP TABLE MetriclargeTank");
    set("txtTankVolume", "4000");
    press("cmdCalcFlowRate");
    EXPECT_EQ(shown("lblBRFlow") + ' ' + shown("lblMaxValveCapacity"), "0 1500") << "the breathing is left out";
    expectTrouble("capacities.mdb has no table MetriclargeTank", "");
}

TEST_F(SummaryTest, PrintsTheLastSizingAndExits)
{
    openDepad();
    sizeDepad();
    press("cmdPrint");
    ASSERT_TRUE(printers.printed);
    EXPECT_EQ(printers.printed->shown("lblMaxValveCap").text, "1500");
    EXPECT_TRUE(bubbleText().contains("Sent to Laser_1."));
    auto& form = dynamic_cast<MainScreen&>(*screens.form());
    form.setPrintEnabled(false);
    EXPECT_FALSE(get<QPushButton>("cmdPrint").isEnabled());

    QTimer::singleShot(0, &get<QPushButton>("cmdExit"), &QPushButton::click);
    QTimer::singleShot(5000, qApp, [] { QApplication::exit(1); });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_FALSE(screens.form()->isVisible());
}

} // namespace

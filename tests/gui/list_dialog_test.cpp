#include "gui/screens_fixture.h"

#include "app/announcer.h"
#include "app/list_dialog.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

#include <fstream>

namespace
{

class ListDialogTest : public testing::Test
{
protected:
    ListDialogTest() { write(12); }

    /// A list of so many rows, the last of which is refused.
    void write(int rows)
    {
        std::ofstream out(home.path / "tanks.csv");
        out << "Tag Number,Pump Rate,Pressure,Tank Volume\n";
        for (int row = 1; row < rows; ++row)
            out << "T-" << row << ",100,50,10000\n";
        out << "T-0,100,,10000\n";
    }

    ListDialog* open()
    {
        auto* const dialog =
            new ListDialog(nullptr, QString::fromStdString((home.path / "tanks.csv").string()), testTables());
        dialog->open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        return dialog;
    }

    static void key(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    static std::string focus()
    {
        const QWidget* const now = QApplication::focusWidget();
        return (now->accessibleName().isEmpty() ? now->property("text").toString() : now->accessibleName())
            .toStdString();
    }
    static std::string said(const ListDialog& dialog)
    {
        return dialog.findChild<Announcer*>()->accessibleName().toStdString();
    }

    std::string files() const
    {
        return QDir(QString::fromStdString(home.path.string()))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name)
            .join(u' ')
            .toStdString();
    }

    const TemporaryDirectory home;
};

TEST_F(ListDialogTest, SizesByEnterAloneAndKeepsWhatIsThere)
{
    for (const char* const answer : {"tanks_sized.csv", "tanks_sized (2).csv"}) {
        const QPointer<ListDialog> dialog = open();
        EXPECT_EQ(focus(), "&Size");
        key(Qt::Key_Return);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !said(*dialog).empty(); }));
        EXPECT_TRUE(said(*dialog).starts_with("12 rows: 11 sized, 1 refused, 0 failed. The answer is " +
                                              (home.path / answer).string() + ".\nNo column Valve Model: Series 61"))
            << said(*dialog);
        EXPECT_EQ(focus(), "Close");
        key(Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.isNull(); }));
    }
    EXPECT_EQ(files(), "tanks.csv tanks_sized (2).csv tanks_sized.csv");
}

TEST_F(ListDialogTest, CancelLeavesNoFile)
{
    write(20'000);
    const QPointer<ListDialog> dialog = open();
    dialog->findChild<QCheckBox*>()->setChecked(true);
    key(Qt::Key_Return);
    EXPECT_EQ(focus(), "Progress") << "where Enter stops nothing";
    EXPECT_NE(files(), "tanks.csv") << "the directory of the summaries";
    key(Qt::Key_Escape);
    EXPECT_EQ(said(*dialog), "Cancelled after 0 of 20000 rows; no answer is kept.");
    EXPECT_EQ(files(), "tanks.csv");

    dialog->findChild<QCheckBox*>()->setChecked(false);
    key(Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return dialog->findChild<QProgressBar*>()->value() > 0; }));
    dialog->close();
    EXPECT_EQ(files(), "tanks.csv");
    EXPECT_EQ(focus(), "&Size");
    key(Qt::Key_Return);
    delete dialog;
    EXPECT_EQ(files(), "tanks.csv");
}

TEST_F(ListDialogTest, WritesSummariesAndSaysWhatStopsIt)
{
    QPointer<ListDialog> dialog = open();
    dialog->findChild<QCheckBox*>()->setChecked(true);
    std::ofstream(home.path / "tanks_sized.csv") << "somebody's";
    key(Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !said(*dialog).empty(); }));
    const std::filesystem::path answer = home.path / "tanks_sized.csv";
    EXPECT_EQ(said(*dialog), "Nothing is sized: " + answer.string() + ": it exists already.");
    EXPECT_EQ(files(), "tanks.csv tanks_sized.csv");
    std::filesystem::remove(answer);
    std::filesystem::rename(home.path / "tanks.csv", home.path / "moved.csv");
    key(Qt::Key_Return);
    EXPECT_EQ(said(*dialog),
              "Nothing is sized: " + (home.path / "tanks.csv").string() + ": No such file or directory.");
    std::filesystem::rename(home.path / "moved.csv", home.path / "tanks.csv");
    key(Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(answer); }));
    EXPECT_EQ(files(), "tanks.csv tanks_sized.csv tanks_summaries");
    EXPECT_EQ(QDir(QString::fromStdString((home.path / "tanks_summaries").string())).entryList(QDir::Files).size(), 11);
    ASSERT_TRUE(QTest::qWaitFor([] { return focus() == "Close"; }));
    dialog->findChild<QCheckBox*>()->click(); // once more, in another way
    QTest::keyClick(dialog, Qt::Key_S, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(home.path / "tanks_sized (2).csv"); }));
    delete dialog;
}

class ListEntriesTest : public ScreensTest
{
protected:
    ListEntriesTest() { std::ofstream(list) << "Pump Rate,Pressure,Tank Volume\n100,50,10000\n"; }

    void trigger(const char* entry)
    {
        for (QAction* const action : screens.form()->actions())
            if (action->text() == QLatin1String(entry))
                return action->trigger();
        FAIL() << entry;
    }

    /// Names the file that the next dialog asks for.
    static void answerWith(const std::filesystem::path& file)
    {
        QTimer::singleShot(0, qApp, [file] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            dialog->setOption(QFileDialog::DontConfirmOverwrite);
            dialog->findChild<QLineEdit*>()->setText(QString::fromStdString(file.string())); // as typed
            QMetaObject::invokeMethod(dialog, "accept");
        });
    }

    std::string captions() const
    {
        std::string text;
        for (const auto* const control : screens.form()->findChildren<QWidget*>())
            if (control->isVisible() && !control->isWindow()) // a bubble is one
                text += textOf(*control) + '|';
        return text;
    }

    const std::filesystem::path list = home.path / "tanks.csv";
};

TEST_F(ListEntriesTest, CopiedRowsGiveWayToTheirSizingsOnBothForms)
{
    for (const char* const goOn : {"cmdContinue", "cmdNewCalc"}) {
        QApplication::clipboard()->setText("Pump Rate\tPressure\tTank Volume\n10\t60\t100\n1\t\t\n");
        activate();
        const std::string before = captions() + focus();
        trigger("Size Copied &Rows");
        const std::string copied = QApplication::clipboard()->text().toStdString();
        EXPECT_TRUE(copied.find("\tStatus\t") != std::string::npos) << copied;
        EXPECT_NE(copied.find("\t82\tSCFH\t0.2\t"), std::string::npos) << copied;
        const QString outcome = "1 of 2 rows sized, 1 refused: paste them beside the list.";
        EXPECT_TRUE(screens.form()->findChild<Announcer*>()->accessibleName().startsWith(outcome));
        EXPECT_TRUE(bubbleText().contains(outcome));
        EXPECT_EQ(captions() + focus(), before);

        trigger("Size Copied &Rows");
        EXPECT_EQ(QApplication::clipboard()->text().toStdString(), copied) << "no list, and not taken away";
        press(goOn);
    }
}

TEST_F(ListEntriesTest, AListIsAskedForAndItsAnswerMayReplaceAFile)
{
    openMain();
    const std::string before = captions() + focus();
    answerWith(list);
    trigger("Size a &List...");
    const QPointer<ListDialog> dialog = screens.form()->window()->findChild<ListDialog*>();
    ASSERT_NE(dialog, nullptr);
    std::ofstream(home.path / "mine.csv") << "an earlier answer";
    const auto button = [&](const char* name) {
        for (auto* const one : dialog->findChildren<QPushButton*>())
            if (one->accessibleName() == QLatin1String(name) || one->text() == QLatin1String(name))
                return one->click();
        FAIL() << name;
    };
    answerWith(home.path / "mine.csv");
    button("Choose Answer");
    button("&Size");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog->findChild<Announcer*>()->accessibleName().isEmpty(); }));
    std::ifstream answer(home.path / "mine.csv");
    std::string first;
    std::getline(answer, first);
    EXPECT_TRUE(first.starts_with("Pump Rate,Pressure,Tank Volume,Valve Model,")) << first;
    button("Close");
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.isNull(); }));
    activate();
    EXPECT_EQ(captions() + focus(), before);
}

} // namespace

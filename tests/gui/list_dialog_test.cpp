#include "gui/screens_fixture.h"

#include "app/announcer.h"
#include "app/list_dialog.h"

#include <QCheckBox>
#include <QDir>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
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
        EXPECT_EQ(said(*dialog),
                  "12 rows: 11 sized, 1 refused, 0 failed. The answer is " + (home.path / answer).string() + ".");
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
    EXPECT_NE(files(), "tanks.csv") << "the answer grows beside its name";
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
    EXPECT_EQ(said(*dialog), "Stopped after 12 rows, no answer is kept: " + (home.path / "tanks_sized.csv").string() +
                                 ": it exists already.");
    EXPECT_EQ(files(), "tanks.csv tanks_sized.csv tanks_summaries");
    EXPECT_EQ(QDir(QString::fromStdString((home.path / "tanks_summaries").string())).entryList(QDir::Files).size(), 11);
    std::filesystem::remove(home.path / "tanks.csv");
    key(Qt::Key_Return);
    EXPECT_EQ(said(*dialog),
              "Nothing is sized: " + (home.path / "tanks.csv").string() + ": No such file or directory.");
    delete dialog;
}

} // namespace

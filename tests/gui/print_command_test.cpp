#include "report/print_command.h"

#include "app/sizing_state.h"
#include "base/number_text.h"
#include "platform/summary_painter.h"
#include "report/printers.h"
#include "report/summary_form.h"
#include "support/plain_screen.h"

#include <QPrinter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

/// Printers that print into a file.
struct FilePrinters : Printers
{
    int installed = 1;
    int jobs = 0;
    QTemporaryDir directory;
    QString file = directory.filePath(QStringLiteral("job.pdf"));

    int count() const override { return installed; }
    void print(const SummaryForm& page) override
    {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(file);
        paintSummary(page, printer);
        ++jobs;
    }
};

class PrintCommandTest : public testing::Test
{
protected:
    PrintCommandTest()
    {
        state.SizingCase = "Depad API-2000";
        state.ValveType = "Depad";
        state.SizingMethod = "API-2000";
        state.FlashPoint = "100";
        screen.boxes[Box::txtFlashPoint] = "100";
        screen.captions = {{Label::lblTotalFlow, "800"}, {Label::lblPercentValveCapacity, "43"}};
    }

    void click() { cmdPrint_Click({state, screen, messages, numbers, printers, "23 Nov 2026"}); }

    SizingState state;
    PlainScreen screen;
    RecordedMessages messages;
    NumberText numbers;
    FilePrinters printers;
};

const std::vector<std::string> printingError{"cmdPrint: A printing error has occurred"};

} // namespace

TEST_F(PrintCommandTest, WithoutAPrinterSaysSoAndDisablesTheButton)
{
    printers.installed = 0;
    click();
    EXPECT_EQ(messages.texts, std::vector<std::string>{"There is no printer installed on this computer."});
    EXPECT_FALSE(screen.printEnabled);
    EXPECT_EQ(printers.jobs, 0);
}

TEST_F(PrintCommandTest, WantsAValveSizedFirst)
{
    for (const Label empty : {Label::lblTotalFlow, Label::lblPercentValveCapacity}) {
        screen.captions = {{Label::lblTotalFlow, "800"}, {Label::lblPercentValveCapacity, "Less than 1%"}};
        screen.captions[empty] = "";
        click();
        EXPECT_EQ(screen.caption(Label::lblComments), "You must size a valve before printing.");
    }
    EXPECT_EQ(printers.jobs, 0);
    EXPECT_TRUE(messages.texts.empty());
}

TEST_F(PrintCommandTest, JudgesTheStoredMaterialAfresh)
{
    const struct
    {
        const char* valveType;
        const char* unitSystem;
        const char* sizingCase;
        const char* flashBox; ///< only whether it is empty counts
        const char* flashPoint;
        const char* boilingPoint;
        bool before;
        bool after;
    } cases[] = {
        {"Depad", "US", "Depad API-2000", "x", "99,9", "999", true, false},
        {"Depad", "Metric", "Depad API-2000", "", "999", "149", false, true},
        {"Pad", "US", "Depad API-2000", "x", "100", "", false, false},
        {"Depad", "US", "Depad Direct Displacement", "x", "0", "", true, true},
    };
    numbers = NumberText({",", ".", "3;0", ","});
    for (const auto& row : cases) {
        state.ValveType = row.valveType;
        state.UnitSystem = row.unitSystem;
        state.SizingCase = row.sizingCase;
        state.FlashPoint = row.flashPoint;
        state.BoilingPoint = row.boilingPoint;
        state.HighFlashBoil = row.before;
        screen.boxes[Box::txtFlashPoint] = row.flashBox;
        click();
        EXPECT_EQ(state.HighFlashBoil, row.after) << row.unitSystem << row.flashPoint << '/' << row.boilingPoint;
    }
    EXPECT_TRUE(messages.texts.empty());
}

TEST_F(PrintCommandTest, APointThatIsNoNumberEndsInTheMessage)
{
    screen.boxes[Box::txtFlashPoint] = ""; // emptied after the sizing, which had no boiling point
    click();
    EXPECT_EQ(messages.texts, printingError);
    EXPECT_EQ(printers.jobs, 0);
}

TEST_F(PrintCommandTest, APageThatCannotBePaintedEndsInTheMessage)
{
    printers.file = printers.directory.filePath(QStringLiteral("missing/job.pdf"));
    click();
    EXPECT_EQ(messages.texts, printingError);
}

TEST_F(PrintCommandTest, PrintsAPageThatCouldOnlyBeFilledInPart)
{
    state.PercentCap = 400;
    click();
    EXPECT_EQ(messages.texts, std::vector<std::string>{"frmPrint Form_Load: An error has occurred while printing"});
    EXPECT_EQ(printers.jobs, 1);
    EXPECT_EQ(screen.caption(Label::lblTotalFlow), "");
}

#include "gui/screens_fixture.h"

#include "app/main_form_layout.h"
#include "app/setup_form_layout.h"

namespace
{

using CasesInWindows = ScreensTest;

TEST_F(CasesInWindows, GiveWhatTheCaseFileSays)
{
    for (const Case& row : readCases("sizings.csv")) {
        messages.texts.clear();
        openMain(row["Valve Model"] + ", " + row["Valve Type"] + ", " + row["Sizing Method"] + ", " +
                 row["Units of Measure"] + ", " + row["Units of Pressure"]);
        for (const auto& [column, box] : entryColumns)
            set(boxNames[static_cast<std::size_t>(box)], row[column]);
        press("cmdCalcFlowRate");
        expectOutcome(row, dynamic_cast<MainScreen&>(*screens.form()), messages);
    }
}

TEST_F(CasesInWindows, TheSetupFormLooksAsTheCaseFileSays)
{
    EXPECT_EQ(readCases("setup_form.csv").size(), std::size(setupFormRows));
    for (const Case& row : readCases("setup_form.csv")) {
        const QWidget& control = get<QWidget>(row["Control"].c_str());
        auto* const label = qobject_cast<const QLabel*>(&control);
        const bool inFrame = qobject_cast<const QRadioButton*>(&control) != nullptr;
        expectPlace(control, inFrame ? *control.parentWidget() : *screens.form(), row["Position"]);
        EXPECT_EQ(textOf(control), row["Text"]) << row["Control"];
        EXPECT_EQ(control.accessibleName().toStdString(), row["Name"]) << row["Control"];
        if (label != nullptr) {
            EXPECT_EQ(label->buddy() != nullptr ? label->buddy()->objectName().toStdString() : "", row["Buddy"]);
        }
    }
    for (const auto& [frame, grey] : {std::pair{"frmModel", false}, {"frmPadDepad", true}, {"frmDDAPI", true}})
        EXPECT_EQ(get<QGroupBox>(frame).palette().color(QPalette::Window) == QColor(192, 192, 192), grey) << frame;
}

TEST_F(CasesInWindows, TheMainFormLooksAsTheCaseFileSays)
{
    EXPECT_EQ(readCases("main_form.csv").size(), std::size(mainFormRows));
    for (const std::string setup :
         {"Series 61, Pad, API-2000, US, PSI", "Series 61, Pad, Direct Displacement, Metric, kPa",
          "Series 63, Depad, API-2000, Metric, mbar", "Series 63, Depad, Direct Displacement, US, in wc"}) {
        openMain(setup);
        for (const Case& row : readCases("main_form.csv")) {
            const QWidget& control = get<QWidget>(row["Control"].c_str());
            expectPlace(control, *screens.form(), row["Position"]);
            std::string spoken = control.accessibleDescription().toStdString();
            if (qobject_cast<const QLabel*>(&control) == nullptr)
                spoken = control.accessibleName().toStdString();
            const std::string text = textOf(control) + (spoken.empty() ? "" : " / " + spoken);
            EXPECT_EQ(control.isVisible() ? text : "(hidden)", row[setup]) << row["Control"] << ", " << setup;
        }
        EXPECT_EQ(focus(), "txtPumpRate");
    }
    EXPECT_EQ(screens.form()->palette().color(QPalette::Window), QColor(192, 192, 192));
    EXPECT_EQ(get<QLabel>("lblComments").palette().color(QPalette::WindowText), QColor(192, 64, 0));
    EXPECT_EQ(get<QLabel>("lblTotalFlow").font().bold(), true);
    EXPECT_EQ(get<QComboBox>("cmbBlanketingGas").count(), 4);
}

} // namespace

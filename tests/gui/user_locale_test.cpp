#include "gui/screens_fixture.h"

#include "platform/user_locale.h"

namespace
{

/// The separators that the locale of this run is known to have; "." where the run names none.
std::string expected(const char* variable)
{
    return qEnvironmentVariable(variable, ".").toStdString();
}

std::string with(const std::string& separator, std::string text)
{
    if (const auto point = text.find('.'); point != std::string::npos)
        text.replace(point, 1, separator);
    return text;
}

/// Run once in every locale that the build generates: the same duty, typed as its users type, gives the same valve.
TEST(UserLocale, SameDutySameValve)
{
    const std::string typed = expected("SIZING_TYPED_SEPARATOR");
    const std::string shown = expected("SIZING_SHOWN_SEPARATOR");
    RecordedMessages messages;
    NoPrinters printers;
    Screens screens(userLocale(), messages, printers, SIZING_DATA_FILE);
    screens.showSetup();
    EXPECT_EQ(screens.state().ValidChars, "1234567890" + typed);
    control<QPushButton>(*screens.form(), "cmdContinue").click();
    screens.form()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(screens.form()));

    const auto caption = [&](const char* label) {
        return control<QLabel>(*screens.form(), label).text().toStdString();
    };
    const auto type = [&](const char* box, const std::string& text) {
        auto& edit = control<QLineEdit>(*screens.form(), box);
        edit.clear();
        for (const QChar character : QString::fromStdString(with(typed, text))) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, character);
            QApplication::sendEvent(&edit, &press);
        }
        EXPECT_EQ(edit.text().toStdString(), with(typed, text));
    };
    EXPECT_EQ(control<QLineEdit>(*screens.form(), "txtSpecGrav").text().toStdString(), with(shown, "0.97"));
    EXPECT_EQ(control<QComboBox>(*screens.form(), "cmbBlanketingGas").currentText(), "Nitrogen");

    // 60.5 psi of nitrogen: the smallest valves pass 509 and 1018 SCFH, Cv 7.5 just over 19,000.
    for (const auto& [pumpRate, cv] : {std::pair{"10.5", "0.2"}, {"40.5", "0.4"}, {"100.5", "1"}, {"2000.5", "7.5"}}) {
        type("txtPumpRate", pumpRate);
        type("txtPressure", "60.5");
        type("txtTankVolume", "10000.5");
        type("txtSpecGrav", "0.97");
        EXPECT_EQ(control<QComboBox>(*screens.form(), "cmbBlanketingGas").currentText(), "Nitrogen");
        control<QPushButton>(*screens.form(), "cmdCalcFlowRate").click();
        EXPECT_EQ(caption("lblCV"), with(shown, cv)) << caption("lblComments");
        EXPECT_EQ(caption("lblSGGas"), with(shown, "0.97"));
        EXPECT_NE(caption("lblPercentValveCapacity"), "");
    }
    EXPECT_TRUE(messages.texts.empty());
}

} // namespace

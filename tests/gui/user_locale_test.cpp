#include "gui/screens_fixture.h"

#include "platform/user_locale.h"

namespace
{

std::string with(const std::string& separator, std::string text)
{
    if (const auto point = text.find('.'); point != std::string::npos)
        text.replace(point, 1, separator);
    return text;
}

class UserLocale : public ScreensTest
{
protected:
    UserLocale() : ScreensTest(&userLocale()) {}

    void enter(const char* box, const std::string& text)
    {
        auto& edit = get<QLineEdit>(box);
        edit.clear();
        for (const QChar character : QString::fromStdString(text)) {
            QKeyEvent typed(QEvent::KeyPress, 0, Qt::NoModifier, character);
            QApplication::sendEvent(&edit, &typed);
        }
        EXPECT_EQ(edit.text().toStdString(), text);
    }
};

/// Run once in every locale that the build generates: the same duty, typed as its users type, gives the same valve.
TEST_F(UserLocale, SameDutySameValve)
{
    const std::string typed = qEnvironmentVariable("SIZING_TYPED_SEPARATOR", ".").toStdString();
    const std::string separator = qEnvironmentVariable("SIZING_SHOWN_SEPARATOR", ".").toStdString();
    EXPECT_EQ(screens.state().ValidChars, "1234567890" + typed);
    openMain();
    EXPECT_EQ(entered("txtSpecGrav") + gas(), with(separator, "0.97Nitrogen"));
    // At 50.5 psi Cv c passes 505 c.
    for (const auto& [pumpRate, cv] : {std::pair{"10.5", "0.2"}, {"20.5", "0.4"}, {"40.5", "1"}, {"440.5", "7.5"}}) {
        enter("txtPumpRate", with(typed, pumpRate));
        enter("txtPressure", with(typed, "50.5"));
        enter("txtTankVolume", with(typed, "42.5"));
        enter("txtSpecGrav", with(typed, "0.97"));
        EXPECT_EQ(gas(), "Nitrogen");
        press("cmdCalcFlowRate");
        EXPECT_EQ(shown("lblCV"), with(separator, cv)) << shown("lblComments");
        EXPECT_EQ(shown("lblSGGas"), with(separator, "0.97"));
        EXPECT_NE(shown("lblPercentValveCapacity"), "");
    }
    EXPECT_TRUE(messages.texts.empty());
    press("cmdPrint");
    if (const QString format = qEnvironmentVariable("SIZING_DATE_FORMAT"); !format.isEmpty()) {
        EXPECT_EQ(printers.printed->shown("lblReportDate").text, QDate::currentDate().toString(format).toStdString());
    }
}

} // namespace

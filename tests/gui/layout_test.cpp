#include "gui/main_form_fixture.h"

namespace
{

TEST_F(MainFormTest, StandsInTheMiddleOfTheScreen)
{
    for (const char* const goOn : {"cmdContinue", "cmdNewCalc"}) {
        const QRect screen = screens.form()->screen()->geometry();
        const QRect window = screens.form()->window()->geometry();
        EXPECT_EQ(window.size(), window.size().boundedTo(screen.size())) << "else the form scrolls";
        EXPECT_LT((window.center() - screen.center()).manhattanLength(), 10);
        press(goOn);
    }
}

/// Names of the visible controls that overlap another one, reach over the form or do not show their whole text.
std::string misplaced(QWidget& form)
{
    std::string names;
    QRegion taken;
    for (QWidget* const widget : form.findChildren<QWidget*>()) {
        auto* const label = qobject_cast<QLabel*>(widget);
        const bool text = label != nullptr ? !label->text().isEmpty() : qobject_cast<QPushButton*>(widget) != nullptr;
        const bool box = widget->inherits("QLineEdit") || widget->inherits("QListWidget");
        if (!widget->isVisible() || !(text || box))
            continue;
        const QRect place(widget->mapTo(&form, QPoint()), widget->size());
        const bool wraps = label != nullptr && label->wordWrap();
        const QSize needed = wraps ? QSize(0, label->heightForWidth(label->width())) : widget->sizeHint();
        if (!form.rect().contains(place) || taken.intersects(place) ||
            (text && needed != needed.boundedTo(widget->size())))
            names += widget->objectName().toStdString() + " ";
        taken += place;
    }
    return names;
}

TEST_F(MainFormTest, NothingIsClippedOrOverlaps)
{
    EXPECT_EQ(misplaced(*screens.form()), "");
    for (const Offer& offer : offers)
        for (const char* const method : {choice::api2000, choice::directDisplacement}) {
            openMain(std::string(offer.valveModel) + ", " + offer.valveType + ", " + method + ", " + offer.unitSystem +
                     ", " + offer.pressUnits);
            EXPECT_EQ(misplaced(*screens.form()), "") << offer.message << method;
            set("txtPumpRate", "20");
            set("txtPressure", NumberText().general(offer.highest / 2));
            set("txtTankVolume", "500");
            set("txtSpecGrav", "0.6"); // a capacity with many digits
            set("txtFlashPoint", "60");
            press("cmdCalcFlowRate");
            EXPECT_NE(shown("lblCV"), "") << shown("lblComments");
            EXPECT_EQ(misplaced(*screens.form()), "") << offer.message << method;
        }
    for (const Case& row : readCases("sizings.csv")) {
        get<QLabel>("lblComments").setText(QString::fromStdString(row["Comments"]));
        EXPECT_EQ(misplaced(*screens.form()), "") << row["Comments"];
    }
}

} // namespace

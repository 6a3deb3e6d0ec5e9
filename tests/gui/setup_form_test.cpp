#include "gui/screens_fixture.h"

#include "base/customer_fields.h"

namespace
{

class SetupFormTest : public ScreensTest
{
protected:
    std::string entries(const char* list)
    {
        QStringList texts;
        for (int row = 0; row < get<QListWidget>(list).count(); ++row)
            texts.append(get<QListWidget>(list).item(row)->text());
        EXPECT_EQ(get<QListWidget>(list).currentRow(), 0);
        return texts.join('|').toStdString();
    }
};

TEST_F(SetupFormTest, OpensWithItsDefaults)
{
    EXPECT_EQ(screens.form()->windowTitle(),
              "Halvor-ORM  Blanketing Valve Sizing Application - Version " SIZING_VERSION);
    EXPECT_FALSE(get<QRadioButton>("optDepad").isEnabled());
    const QPalette colours = get<QRadioButton>("optDepad").palette();
    EXPECT_NE(colours.color(QPalette::Disabled, QPalette::WindowText),
              colours.color(QPalette::Active, QPalette::WindowText));
    EXPECT_EQ(screens.state().SizingCase + screens.state().ValidChars, "Pad API-20001234567890.");
    activate();
    EXPECT_EQ(focus(), "optSeries61");
}

/// The options are clicked one after another, from the defaults.
TEST_F(SetupFormTest, UnitListsFollowModelTypeAndUnits)
{
    for (const Case& row : readCases("unit_lists.csv")) {
        screens.showSetup();
        for (const QString& option : QString::fromStdString(row["Options"]).split(' '))
            choose(option.toUtf8().constData());
        for (const char* const list : {"lstFlow", "lstTemp", "lstVolume"})
            EXPECT_EQ(entries(list), row[list]) << row["Options"];
        std::string offered;
        for (const Offer& offer : offers)
            if (row["Valve"] == offer.valveModel + (" " + (offer.valveType + (" " + std::string(offer.unitSystem)))))
                offered += (offered.empty() ? "" : "|") + std::string(offer.pressUnits);
        EXPECT_EQ(entries("lstPressure"), offered) << row["Options"];
        chooseUnit(QString::fromStdString(row["Chosen"]));
        press("cmdContinue");
        const SizingState& state = screens.state();
        EXPECT_EQ(state.ValveTable, row["Table"]) << row["Options"];
        EXPECT_EQ(state.PressUnits + " " + state.FlowUnits + " " + state.VolUnits + " " + state.PumpRateUnits,
                  row["Chosen"] + " " + row["lstFlow"] + " " + row["lstVolume"] + " " + row["Pump Rate Units"]);
    }
}

/// Whatever is chosen before, each model can be chosen, all of its units are seen, and the main form opens.
TEST_F(SetupFormTest, EveryChoiceCanBeContinued)
{
    for (const Model& model : models)
        for (const UnitSystem& before : unitSystems)
            for (const std::string type : {choice::pad, choice::depad}) {
                screens.showSetup();
                chooseCaptioned(QString::fromUtf8(before.option));
                chooseCaptioned(QString::fromUtf8(model.name));
                if (isOffered(model.name, type))
                    chooseCaptioned(QString::fromStdString(type));
                const auto& list = get<QListWidget>("lstPressure");
                for (int row = 0; row < list.count(); ++row)
                    EXPECT_TRUE(list.viewport()->rect().contains(list.visualItemRect(list.item(row))))
                        << model.name << ", " << list.item(row)->text().toStdString();
                ASSERT_GT(list.count(), 0) << model.name << " after " << before.name;
                press("cmdContinue");
                EXPECT_EQ(screens.state().ValveModel, model.name);
                EXPECT_NE(findOffer(model.name, screens.state().ValveType, screens.state().PressUnits), nullptr);
            }
}

TEST_F(SetupFormTest, CustomerInformationSurvivesChoicesDoNot)
{
    for (const CustomerField& field : customerFields)
        set(field.box, std::string(" Å & ") + field.box);
    for (const char* const option : {"optSeries63", "optDepad", "optMetricUnits", "optDD"})
        choose(option);
    press("cmdContinue");
    screens.state().InputError = screens.state().SizingError = true;
    locale = GivenLocale(",");
    press("cmdNewCalc");
    for (const CustomerField& field : customerFields)
        EXPECT_EQ(entered(field.box), std::string(" Å & ") + field.box);
    for (const char* const option : {"optUSUnits", "optSeries61", "optPad", "optAPI2000"})
        EXPECT_TRUE(get<QRadioButton>(option).isChecked()) << option;
    EXPECT_FALSE(screens.state().InputError || screens.state().SizingError);
    EXPECT_EQ(screens.state().ValidChars, "1234567890,") << "a changed locale takes effect here";
}

TEST_F(SetupFormTest, OnlyOneFormExists)
{
    for (const char* const goOn : {"cmdContinue", "cmdNewCalc"}) {
        const QPointer<QWidget> before = screens.form();
        press(goOn);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(before.isNull());
        EXPECT_TRUE(screens.form()->isVisible());
    }
}

TEST_F(SetupFormTest, AccessKeysReachEveryChoiceAndBoxAtOnce)
{
    activate();
    for (const auto& [letter, option] : {std::pair{Qt::Key_3, "optSeries63"},
                                         {Qt::Key_D, "optDepad"},
                                         {Qt::Key_R, "optDD"},
                                         {Qt::Key_M, "optMetricUnits"},
                                         {Qt::Key_P, "optPad"},
                                         {Qt::Key_2, "optAPI2000"},
                                         {Qt::Key_U, "optUSUnits"},
                                         {Qt::Key_1, "optSeries61"}}) {
        alt(letter);
        EXPECT_TRUE(get<QRadioButton>(option).isChecked()) << option;
    }
    std::string visited; // two captions share the O: it goes on to the other one
    for (const Qt::Key letter : {Qt::Key_N, Qt::Key_L, Qt::Key_T, Qt::Key_O, Qt::Key_O}) {
        alt(letter);
        visited += focus() + " ";
    }
    EXPECT_EQ(visited, "txtCustomerName txtCustomerLocation txtCustTagNo txtNotes txtORMRep ");
    alt(Qt::Key_C);
    EXPECT_EQ(screens.form()->objectName(), "frmMain");
}

TEST_F(SetupFormTest, AUnitIsAlwaysSelected)
{
    activate();
    choose("optMetricUnits");
    auto& list = get<QListWidget>("lstPressure");
    const auto click = [&](QPoint at, Qt::KeyboardModifiers modifiers) {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers, at);
        return list.selectedItems().size() == 1 && list.selectedItems().front() == list.currentItem();
    };
    EXPECT_TRUE(click(list.visualItemRect(list.item(1)).center(), {}));
    EXPECT_EQ(list.currentRow(), 1);
    EXPECT_TRUE(click(list.visualItemRect(list.item(1)).center(), Qt::ControlModifier));
    choose("optUSUnits");
    EXPECT_TRUE(click(QPoint(20, 20), {})) << "the empty second row";
}

TEST_F(SetupFormTest, TabGoesThroughInOrder)
{
    activate();
    EXPECT_EQ(tabStops(14), "optSeries61 optPad optAPI2000 optUSUnits txtCustomerName txtCustomerLocation txtCustTagNo "
                            "txtNotes txtORMRep lstPressure lstFlow lstTemp lstVolume cmdContinue ");
    EXPECT_EQ(focus(), "optSeries61");
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    key(Qt::Key_Return);
    EXPECT_EQ(screens.form()->objectName(), "frmMain");
}

} // namespace

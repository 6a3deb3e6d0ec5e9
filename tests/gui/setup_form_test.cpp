#include "gui/screens_fixture.h"

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
        EXPECT_TRUE(texts.isEmpty() || get<QListWidget>(list).currentRow() == 0);
        return texts.join('|').toStdString();
    }
    void choose(const char* option) { get<QRadioButton>(option).setChecked(true); }
};

TEST_F(SetupFormTest, OpensWithItsDefaults)
{
    EXPECT_EQ(screens.form()->windowTitle(),
              "Halvor-ORM  Blanketing Valve Sizing Application - Version " SIZING_VERSION);
    for (const char* const option : {"optUSUnits", "optSeries61", "optPad", "optAPI2000"})
        EXPECT_TRUE(get<QRadioButton>(option).isChecked()) << option;
    EXPECT_FALSE(get<QRadioButton>("optDepad").isEnabled());
    const QPalette colours = get<QRadioButton>("optDepad").palette();
    EXPECT_NE(colours.color(QPalette::Disabled, QPalette::WindowText),
              colours.color(QPalette::Active, QPalette::WindowText));
    EXPECT_EQ(entries("lstPressure") + entries("lstFlow") + entries("lstTemp") + entries("lstVolume"),
              "PSISCFHFahrenheitGallons");
    EXPECT_EQ(screens.state().SizingCase, "Pad API-2000");
    EXPECT_EQ(screens.state().ValidChars, "1234567890.");
    activate();
    EXPECT_EQ(focus(), "optSeries61");
}

TEST_F(SetupFormTest, UnitListsFollowModelTypeAndUnits)
{
    struct Case
    {
        std::vector<const char*> options;
        int pressureRow;
        const char* pressure;
        const char* flow;
        const char* table;
        const char* units; ///< pressure, flow, volume, pump rate
    };
    for (const Case& c : {
             Case{{"optSeries61", "optUSUnits"}, 0, "PSI", "SCFH", "psi_Pad", "PSI SCFH Gallons gpm"},
             {{"optMetricUnits"}, 0, "kg/cm2|kPa", "Nm3/Hr", "kgcm2_Pad", "kg/cm2 Nm3/Hr Cubic Meters m3/Hr"},
             {{"optMetricUnits"}, 1, "kg/cm2|kPa", "Nm3/Hr", "kpa_Pad", "kPa Nm3/Hr Cubic Meters m3/Hr"},
             {{"optSeries63"}, 0, "PSI", "SCFH", "psi_Pad", "PSI SCFH Gallons gpm"},
             {{"optSeries63", "optMetricUnits"}, 1, "kg/cm2|kPa", "Nm3/Hr", "kpa_Pad", "kPa Nm3/Hr Cubic Meters m3/Hr"},
             {{"optSeries63", "optDepad"}, 0, "PSI|in wc", "SCFH", "psi_Depad", "PSI SCFH Gallons gpm"},
             {{"optSeries63", "optDepad"}, 1, "PSI|in wc", "SCFH", "inwc_Depad", "in wc SCFH Gallons gpm"},
             {{"optSeries63", "optDepad", "optMetricUnits"},
              0,
              "mbar",
              "Nm3/Hr",
              "mbar_Depad",
              "mbar Nm3/Hr Cubic Meters m3/Hr"},
             {{"optSeries63", "optDepad", "optMetricUnits", "optUSUnits"},
              0,
              "PSI|in wc",
              "SCFH",
              "psi_Depad",
              "PSI SCFH Gallons gpm"},
             // A model without depad valves goes back to pad.
             {{"optSeries63", "optDepad", "optSeries61"}, 0, "PSI", "SCFH", "psi_Pad", "PSI SCFH Gallons gpm"},
         }) {
        screens.showSetup();
        for (const char* const option : c.options)
            choose(option);
        EXPECT_EQ(entries("lstPressure"), c.pressure);
        EXPECT_EQ(entries("lstFlow"), c.flow);
        get<QListWidget>("lstPressure").setCurrentRow(c.pressureRow);
        press("cmdContinue");
        const SizingState& state = screens.state();
        EXPECT_EQ(state.ValveTable, c.table);
        EXPECT_EQ(state.PressUnits + " " + state.FlowUnits + " " + state.VolUnits + " " + state.PumpRateUnits, c.units);
    }
}

TEST_F(SetupFormTest, SwitchingUnitsForgetsThePressureUnit)
{
    choose("optMetricUnits");
    get<QListWidget>("lstPressure").setCurrentRow(1);
    choose("optUSUnits");
    choose("optMetricUnits");
    EXPECT_EQ(get<QListWidget>("lstPressure").currentItem()->text(), "kg/cm2");
    EXPECT_EQ(entries("lstTemp") + entries("lstVolume"), "CelciusCubic Meters");
}

TEST_F(SetupFormTest, CustomerInformationSurvivesChoicesDoNot)
{
    const std::pair<const char*, const char*> texts[] = {{"txtCustomerName", "Åsa & Söner"},
                                                         {"txtCustomerLocation", "Göteborg"},
                                                         {"txtCustTagNo", "T-1"},
                                                         {"txtNotes", "two  blanks "},
                                                         {"txtORMRep", "R"}};
    for (const auto& [box, text] : texts)
        set(box, QString::fromUtf8(text));
    openMain({"optSeries63", "optDepad", "optMetricUnits", "optDD"});
    screens.state().InputError = screens.state().SizingError = true;
    locale = GivenLocale(",");
    press("cmdNewCalc");

    for (const auto& [box, text] : texts)
        EXPECT_EQ(entered(box), text);
    for (const char* const option : {"optUSUnits", "optSeries61", "optPad", "optAPI2000"})
        EXPECT_TRUE(get<QRadioButton>(option).isChecked()) << option;
    EXPECT_FALSE(screens.state().InputError || screens.state().SizingError);
    EXPECT_EQ(screens.state().ValidChars, "1234567890,") << "a changed locale takes effect here";
}

TEST_F(SetupFormTest, OnlyOneFormExists)
{
    const QPointer<QWidget> setup = screens.form();
    openMain();
    const QPointer<QWidget> mainForm = screens.form();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(setup.isNull());
    press("cmdNewCalc");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(mainForm.isNull());
    EXPECT_TRUE(screens.form()->isVisible());
}

TEST_F(SetupFormTest, AccessKeysReachEveryChoiceAndBox)
{
    activate();
    const auto alt = [this](Qt::Key letter) { key(letter, Qt::AltModifier); };
    for (const auto& [letter, option] : {std::pair{Qt::Key_3, "optSeries63"},
                                         {Qt::Key_D, "optDepad"},
                                         {Qt::Key_R, "optDD"},
                                         {Qt::Key_M, "optMetricUnits"},
                                         {Qt::Key_P, "optPad"},
                                         {Qt::Key_2, "optAPI2000"},
                                         {Qt::Key_U, "optUSUnits"},
                                         {Qt::Key_1, "optSeries61"}}) {
        alt(letter);
        EXPECT_TRUE(QTest::qWaitFor([&] { return get<QRadioButton>(option).isChecked(); })) << option;
    }
    for (const auto& [letter, box] :
         {std::pair{Qt::Key_N, "txtCustomerName"}, {Qt::Key_L, "txtCustomerLocation"}, {Qt::Key_T, "txtCustTagNo"}}) {
        alt(letter);
        EXPECT_EQ(focus(), box);
    }
    alt(Qt::Key_O); // two captions share it: it goes on to the other one
    const std::string first = focus();
    alt(Qt::Key_O);
    EXPECT_EQ((std::set{first, focus()}), (std::set<std::string>{"txtNotes", "txtORMRep"}));
    alt(Qt::Key_C);
    EXPECT_TRUE(QTest::qWaitFor([&] { return screens.form()->objectName() == "frmMain"; }));
}

TEST_F(SetupFormTest, FastTypingKeepsItsOrder)
{
    activate();
    for (const Qt::Key letter : {Qt::Key_3, Qt::Key_D, Qt::Key_M, Qt::Key_R, Qt::Key_C}) // no wait in between
        key(letter, Qt::AltModifier);
    EXPECT_EQ(screens.state().ValveTable, "mbar_Depad");
    EXPECT_EQ(screens.state().SizingMethod, "Direct Displacement");
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
    EXPECT_EQ(tabRoad(14), "optSeries61 optPad optAPI2000 optUSUnits txtCustomerName txtCustomerLocation txtCustTagNo "
                           "txtNotes txtORMRep lstPressure lstFlow lstTemp lstVolume cmdContinue ");
    EXPECT_EQ(focus(), "optSeries61");
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focus(), "cmdContinue");
    key(Qt::Key_Return);
    EXPECT_EQ(screens.form()->objectName(), "frmMain");
}

} // namespace

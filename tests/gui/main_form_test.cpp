#include "gui/main_form_fixture.h"

#include "platform/qt_message_box.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QTextBrowser>

namespace
{

TEST_F(MainFormTest, EditsEmptyTheResults)
{
    openDepad();
    for (const std::string box : {"txtPumpRate", "txtPressure", "txtTankVolume", "txtSpecGrav", "txtBoilingPoint",
                                  "txtFlashPoint", "cmbBlanketingGas", "txtStoredMaterial"}) {
        sizeDepad();
        const bool material = box == "txtStoredMaterial";
        get<QWidget>(box.c_str()).setFocus();
        type("1");
        EXPECT_EQ(results().empty(), !material) << box;
        EXPECT_EQ(shown("lblHFPLFP"), material || box == "txtTankVolume" ? "High Flash Point" : "") << box;
        EXPECT_EQ(shown("lblComments").empty(), !material) << box;
        EXPECT_FALSE(shown("lblSGGas2").empty()) << box;
        set("txtSpecGrav", "1");
        set("txtBoilingPoint", "");
    }
    sizeDepad();
    set("txtPumpRate", "50"); // the text it has already: no change
    EXPECT_NE(results(), "");
}

TEST_F(MainFormTest, ClearKeepsTheGas)
{
    openDepad();
    set("txtSpecGrav", "1.52");
    set("txtStoredMaterial", "oil");
    set("txtPumpRate", "1");
    set("txtTankVolume", "20");
    press("cmdCalcFlowRate");
    press("cmdClear");
    EXPECT_EQ(results() + shown("lblHFPLFP") + shown("lblComments") + shown("lblSGGas2"), "");
    for (const char* const box :
         {"txtPumpRate", "txtPressure", "txtBoilingPoint", "txtFlashPoint", "txtStoredMaterial"})
        EXPECT_EQ(entered(box), "") << box;
    EXPECT_EQ(entered("txtTankVolume") + gas() + entered("txtSpecGrav"), "0Dry CO21.52");
    for (const auto& [box, before] :
         {std::pair{"txtPumpRate", "1"}, {"txtTankVolume", "20"}, {"txtStoredMaterial", "oil"}}) {
        get<QLineEdit>(box).undo();
        EXPECT_EQ(entered(box), before);
    }
}

TEST_F(MainFormTest, GravityNamesItsGasKeyByKey)
{
    openMain();
    get<QLineEdit>("txtSpecGrav").setFocus();
    for (const auto& [character, name] : {std::pair{"1", "Air"}, {".", "Air"}, {"5", ""}, {"2", "Dry CO2"}}) {
        type(character);
        EXPECT_EQ(gas(), name) << character;
    }
    for (const auto& [text, name] :
         {std::pair{".6", "Natural Gas"}, {"1.00", "Air"}, {"0.97", "Nitrogen"}, {"0.9700001", ""}, {"", ""}}) {
        set("txtSpecGrav", text);
        EXPECT_EQ(gas(), name) << text;
    }
}

TEST_F(MainFormTest, PickedGasSetsItsGravityAndTypedGasNothing)
{
    openMain();
    auto& box = get<QComboBox>("cmbBlanketingGas");
    box.setFocus();
    for (const char* const picked : {"Air1", "Dry CO21.52", "Natural Gas0.6"}) {
        key(Qt::Key_Down);
        EXPECT_EQ(gas() + entered("txtSpecGrav"), picked);
    }
    for (const char* const typed : {"nitrogen", "Air", "Ni"}) { // never completed, picked by Enter or by leaving
        box.setFocus();
        box.lineEdit()->selectAll();
        type(typed);
        EXPECT_EQ(gas(), typed);
        key(Qt::Key_Return);
        key(Qt::Key_Tab);
        EXPECT_EQ(gas() + entered("txtSpecGrav"), std::string(typed) + "0.6");
    }
    EXPECT_EQ(box.count(), 4);
    QWheelEvent wheel(QPointF(5, 5), box.mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&box, &wheel);
    EXPECT_EQ(gas(), "Ni") << "turns only while it has the focus";
}

TEST_F(MainFormTest, NumericBoxesTakeDigitsSeparatorAndBackspace)
{
    openMain();
    auto& box = get<QLineEdit>("txtPumpRate");
    type("1a-2 .3,4e");
    key(Qt::Key_Backspace);
    QApplication::clipboard()->setText("-5 x");
    key(Qt::Key_V, Qt::ControlModifier);
    key(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier); // a shortcut of the form, but not here
    EXPECT_EQ(QApplication::clipboard()->text(), "-5 x");
    QKeyEvent ofAnotherLayout(QEvent::ShortcutOverride, 0x42B, Qt::ControlModifier); // where S stands, in Russian
    QApplication::sendEvent(&box, &ofAnotherLayout);
    EXPECT_TRUE(ofAnotherLayout.isAccepted());
    EXPECT_EQ(box.text(), "12.3");
    type("4");
    key(Qt::Key_H, Qt::ControlModifier); // backspace by its code
    EXPECT_EQ(box.text(), "12.3");
    key(Qt::Key_Home);
    key(Qt::Key_Delete);
    key(Qt::Key_Insert, Qt::ShiftModifier); // pasting is not typing
    EXPECT_EQ(box.text(), "-5 x2.3");
    QInputMethodEvent composed;
    composed.setCommitString("7٧8");
    QApplication::sendEvent(&box, &composed);
    EXPECT_EQ(box.text(), "-5 x782.3");

    locale = GivenLocale(",");
    openMain();
    type("12.5,");
    key(Qt::Key_Period, Qt::KeypadModifier); // the keypad types the separator of the user
    EXPECT_EQ(entered("txtPumpRate"), "125,,");
    EXPECT_EQ(entered("txtSpecGrav") + gas(), "0,97Nitrogen");
}

TEST_F(MainFormTest, EnteringABoxSelectsItsFirstTenCharacters)
{
    openMain();
    set("txtPressure", "123456789012");
    auto& box = get<QLineEdit>("txtPressure");
    const QPoint at(20, 8);
    const auto expectSelected = [&](const char* how) {
        EXPECT_EQ(box.selectedText(), "1234567890") << how;
        get<QLineEdit>("txtPumpRate").setFocus();
    };
    key(Qt::Key_Tab);
    expectSelected("Tab");
    alt(Qt::Key_P);
    expectSelected("access key");
    QTest::mousePress(&box, Qt::LeftButton, {}, at);
    QMouseEvent move(QEvent::MouseMove, QPointF(26, 8), box.mapToGlobal(QPointF(26, 8)), Qt::NoButton, Qt::LeftButton,
                     {});
    QApplication::sendEvent(&box, &move);
    QTest::mouseRelease(&box, Qt::LeftButton, {}, QPoint(26, 8));
    expectSelected("mouse, even one that moves");

    const auto focusIn = [&](Qt::FocusReason reason) {
        QFocusEvent event(QEvent::FocusIn, reason);
        QApplication::sendEvent(&box, &event);
    };
    QTest::mouseClick(&box, Qt::LeftButton, {}, at);
    QTest::mouseClick(&box, Qt::LeftButton, {}, at);
    EXPECT_EQ(box.selectedText(), "") << "a second click places the cursor";
    focusIn(Qt::ActiveWindowFocusReason);
    EXPECT_EQ(box.selectedText(), "") << "coming back from another window is not entering";
    get<QLineEdit>("txtPumpRate").setFocus();
    QTest::mousePress(&box, Qt::RightButton, {}, at); // its release goes to the context menu
    focusIn(Qt::PopupFocusReason);
    QTest::mouseClick(&box, Qt::LeftButton, {}, at);
    EXPECT_EQ(box.selectedText(), "") << "nor from the context menu";
    box.setText(QStringLiteral("100.25"));
    QTest::mouseDClick(&box, Qt::LeftButton, {}, at);
    EXPECT_EQ(box.selectedText(), "100.25") << "not only what stands on one side of the separator";
}

/// Keys as the window system hands them on, which a popup would take for itself.
TEST_F(MainFormTest, HelpTakesNoKey)
{
    openMain();
    for (const auto& [key, modifier] : {std::pair{Qt::Key_F1, Qt::ShiftModifier},
                                        {Qt::Key_2, Qt::NoModifier},
                                        {Qt::Key_5, Qt::NoModifier},
                                        {Qt::Key_0, Qt::NoModifier}}) {
        QTest::keyClick(screens.form()->window()->windowHandle(), key, modifier);
        EXPECT_EQ(bubbleText().contains(get<QWidget>("txtPumpRate").toolTip()), key == Qt::Key_F1);
    }
    EXPECT_EQ(entered("txtPumpRate"), "250");

    key(Qt::Key_F1, Qt::ShiftModifier);
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (window->windowType() == Qt::ToolTip && window->isVisible())
            QTest::mouseClick(window->windowHandle(), Qt::LeftButton);
    EXPECT_EQ(bubbleText(), "") << "a click on it closes it";
}

TEST_F(MainFormTest, EveryControlHasItsHelp)
{
    int found = 0;
    for (int form = 0; form < 2; ++form, openDepad())
        for (const QWidget* const control : screens.form()->findChildren<QWidget*>())
            if (control->focusPolicy() != Qt::NoFocus &&
                control->objectName().contains(QRegularExpression("^(txt|opt|lst|cmd|cmb)"))) {
                EXPECT_NE(control->toolTip(), "") << control->objectName().toStdString();
                ++found;
            }
    EXPECT_EQ(found, 31);
}

TEST_F(MainFormTest, HelpNamesTheRangeAndTheModelsRule)
{
    for (const auto& [setup, range] :
         {std::pair{"Series 63, Pad, API-2000, Metric, kg/cm2", "1.76 to 14.06. Series 63 valves must have a minimum "
                                                                "supply pressure of 1.8 kg/cm2."},
          {"Series 63, Pad, API-2000, US, PSI",
           ", gauge, in PSI: 25 to 200."}}) { // the rule begins where the range does
        openMain(setup);
        EXPECT_TRUE(get<QWidget>("txtPressure").toolTip().endsWith(range)) << setup;
    }
    QTextBrowser browser;
    QDesktopServices::setUrlHandler("file", &browser, "setSource");
    key(Qt::Key_F1);
    QDesktopServices::unsetUrlHandler("file");
    EXPECT_EQ(browser.source().fileName(), "user_guide.md");
    EXPECT_TRUE(messages.texts.empty());
}

TEST_F(MainFormTest, KeyboardReachesEverything)
{
    openDepad();
    EXPECT_EQ(tabStops(13),
              "txtPumpRate txtPressure txtTankVolume cmbBlanketingGas txtSpecGrav txtBoilingPoint txtFlashPoint "
              "txtStoredMaterial cmdCalcFlowRate cmdPrint cmdClear cmdNewCalc cmdExit ");
    std::string visited; // the tank volume and the vented gas share V
    for (const Qt::Key letter : {Qt::Key_P, Qt::Key_G, Qt::Key_B, Qt::Key_F, Qt::Key_M, Qt::Key_V, Qt::Key_V}) {
        alt(letter);
        visited += focus() + " ";
    }
    EXPECT_EQ(visited, "txtPressure txtSpecGrav txtBoilingPoint txtFlashPoint txtStoredMaterial txtTankVolume "
                       "cmbBlanketingGas ");
    for (const Qt::Key button : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        get<QLabel>("lblComments").clear();
        get<QPushButton>("cmdCalcFlowRate").setFocus(); // a refusal leads away
        key(button);
        EXPECT_EQ(shown("lblComments"), "Please enter Pressure and Pump-Rate information.");
    }
    alt(Qt::Key_N);
    EXPECT_EQ(screens.form()->objectName(), "frmFirst");
}

TEST_F(MainFormTest, ScreenReadersFindTheGasBoxByItsLabel)
{
    openDepad();
    auto& box = get<QComboBox>("cmbBlanketingGas");
    const auto relations = QAccessible::queryAccessibleInterface(&box)->relations();
    ASSERT_FALSE(relations.isEmpty());
    EXPECT_EQ(relations.front().first->text(QAccessible::Name), "Vented Gas:");
    EXPECT_EQ(box.lineEdit()->accessibleName(), "Vented Gas:");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&get<QWidget>("lblTotalFlow"))->text(QAccessible::Name).trimmed(),
              "")
        << "nothing to read before a sizing";
}

/// The toolkit's own search for a word never returns at the begin or the end of some texts.
TEST_F(MainFormTest, ScreenReadersMayAskForEveryWord)
{
    for (int form = 0; form < 2; ++form, openDepad())
        for (QLineEdit* const box : screens.form()->findChildren<QLineEdit*>()) {
            QAccessibleTextInterface* const text = QAccessible::queryAccessibleInterface(box)->textInterface();
            int start = 0;
            int end = 0;
            for (const char* const entry : {"", ".5", " abc", "-", "100 5"}) {
                box->setText(entry);
                for (int offset = -2; offset <= text->characterCount() + 1; ++offset)
                    for (int boundary = QAccessible::CharBoundary; boundary <= QAccessible::NoBoundary; ++boundary)
                        text->textAtOffset(offset, QAccessible::TextBoundaryType(boundary), &start, &end);
            }
            EXPECT_EQ(text->textAtOffset(1, QAccessible::WordBoundary, &start, &end), "100");
            EXPECT_EQ(text->textAtOffset(4, QAccessible::WordBoundary, &start, &end), "5");
            EXPECT_EQ(text->textAtOffset(5, QAccessible::WordBoundary, &start, &end), "");
            EXPECT_EQ(text->textAtOffset(5, QAccessible::LineBoundary, &start, &end), "100 5");
        }
}

/// A screen reader can press a button behind a message box or a menu, which mouse and keyboard cannot.
TEST_F(MainFormTest, NoFormGoesWhileAMessageStandsOnIt)
{
    QtMessageBox boxes;
    Screens others(locale, boxes, printers, testTables());
    others.showSetup();
    for (const char* const goOn : {"cmdContinue", "cmdNewCalc"}) {
        const QPointer<QWidget> form = others.form();
        const auto press = [&] {
            form->findChild<QPushButton*>(QLatin1String(goOn))->click();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        bool isOpen = false;
        QTimer::singleShot(0, form, [&] {
            isOpen = QApplication::activeModalWidget() != nullptr;
            press();
            QApplication::activeModalWidget()->close();
        });
        form->actions().last()->trigger(); // About
        EXPECT_TRUE(isOpen);
        EXPECT_EQ(others.form(), form);
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(5, 5), form->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(form, &menu);
        EXPECT_NE(QApplication::activePopupWidget(), nullptr);
        press();
        EXPECT_EQ(form, nullptr) << "the menu goes with it";
    }
}

TEST_F(MainFormTest, ARefusalLeadsToItsBox)
{
    openMain();
    set("txtPumpRate", "1.2.3.4.5.6"); // the comments say nothing of it
    set("txtPressure", "60");
    set("txtTankVolume", "1000");
    press("cmdCalcFlowRate");
    EXPECT_EQ(focus(), "txtPumpRate");
    EXPECT_EQ(get<QLineEdit>("txtPumpRate").selectedText(), "1.2.3.4.5.") << "entered as by Tab";
    EXPECT_TRUE(bubbleText().contains("Not a number: digits and one '.' only. Largest rate"));
}

} // namespace

#pragma once

#include "app/form_layout.h"
#include "app/screens.h"
#include "report/printers.h"
#include "support/given_locale.h"
#include "support/plain_screen.h"

#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include <gtest/gtest.h>

#include <set>

/// The control of that name; a name that does not exist ends the test program.
template <typename Control>
Control& control(const QWidget& form, const char* name)
{
    auto* const found = form.findChild<Control*>(QLatin1String(name));
    if (found == nullptr)
        qFatal("no control named %s", name);
    return *found;
}

/// A computer without printers.
struct NoPrinters : Printers
{
    int count() const override { return 0; }
    void print(const SummaryForm&) override {}
};

/// The program's screens with a given locale, on the shipped data file; messages are recorded, never shown.
class ScreensTest : public testing::Test
{
protected:
    ScreensTest() { screens.showSetup(); }

    /// Makes the setup choices by their options, for example {"optSeries63", "optDepad"}, and continues.
    void openMain(std::initializer_list<const char*> options = {})
    {
        for (const char* const name : options)
            get<QRadioButton>(name).setChecked(true);
        get<QPushButton>("cmdContinue").click();
        ASSERT_EQ(screens.form()->objectName(), "frmMain");
        activate();
    }

    void activate()
    {
        screens.form()->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(screens.form()));
    }

    template <typename Control>
    Control& get(const char* name)
    {
        return control<Control>(*screens.form(), name);
    }

    void set(const char* box, const QString& text) { get<QLineEdit>(box).setText(text); }
    std::string shown(const char* label) { return get<QLabel>(label).text().toStdString(); }
    std::string entered(const char* box) { return get<QLineEdit>(box).text().toStdString(); }
    std::string gas() { return get<QComboBox>("cmbBlanketingGas").currentText().toStdString(); }
    void press(const char* button) { get<QPushButton>(button).click(); }

    /// Types into the control that has the focus, as a keyboard does.
    void type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    /// Presses Tab `steps` times and gives the names of the controls it leaves.
    std::string tabRoad(int steps)
    {
        std::string road;
        for (int step = 0; step < steps; ++step) {
            road += focus() + " ";
            key(Qt::Key_Tab);
        }
        return road;
    }
    std::string focus() { return QApplication::focusWidget()->objectName().toStdString(); }

    /// Captions of the labels that an edit of an input empties, joined; all but the high/low point note.
    std::string results()
    {
        std::string text;
        for (const char* const label : {"lblPRFlow", "lblBRFlow", "lblTotalFlow", "lblSGGas", "lblCV",
                                        "lblValveBodySize", "lblMaxValveCapacity", "lblPercentValveCapacity"})
            text += shown(label);
        return text;
    }

    GivenLocale locale{"."};
    RecordedMessages messages;
    NoPrinters printers;
    Screens screens{locale, messages, printers, SIZING_DATA_FILE};
};

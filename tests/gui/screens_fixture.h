#pragma once

#include "app/bubble.h"
#include "app/form_layout.h"
#include "app/screens.h"
#include "support/cases.h"
#include "support/given_locale.h"
#include "support/recording_printers.h"
#include "support/temporary_directory.h"

#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include <gtest/gtest.h>

/// The program's screens with a given locale, on the tables of the tests; messages are recorded, never shown.
class ScreensTest : public testing::Test
{
protected:
    explicit ScreensTest(const LocaleInfo* other = nullptr)
        : screens(other != nullptr ? *other : locale, messages, printers, dataFile.string())
    {
        std::filesystem::copy_file(testTables(), dataFile);
        screens.showSetup();
    }

    /// The control of that name; a name that does not exist ends the test program.
    template <typename Control>
    Control& get(const char* name)
    {
        auto* const found = screens.form()->findChild<Control*>(QLatin1String(name));
        if (found == nullptr)
            qFatal("no control named %s", name);
        return *found;
    }

    void choose(const char* option) { get<QRadioButton>(option).setChecked(true); }

    /// Chooses the option that is captioned so.
    void chooseCaptioned(const QString& caption)
    {
        for (QRadioButton* const option : screens.form()->findChildren<QRadioButton*>())
            if (option->text().remove(u'&') == caption) {
                option->setChecked(true);
                return;
            }
        qFatal("no option %s", qPrintable(caption));
    }
    void chooseUnit(const QString& pressUnits)
    {
        auto& list = get<QListWidget>("lstPressure");
        list.setCurrentItem(list.findItems(pressUnits, Qt::MatchFixedString).value(0));
    }

    /// Opens the setup form afresh, makes the choices by their texts ("Series 61, Pad, API-2000, US, PSI"), continues.
    void openMain(const std::string& choices = "Series 61, Pad, API-2000, US, PSI")
    {
        const QStringList texts = QString::fromStdString(choices).split(", ");
        screens.showSetup();
        for (const QString& text : texts.first(3))
            chooseCaptioned(text);
        chooseCaptioned(QString::fromUtf8(unitsOf(texts[3].toStdString())->option));
        chooseUnit(texts[4]);
        press("cmdContinue");
        activate();
    }
    void openDepad() { openMain("Series 63, Depad, API-2000, Metric, mbar"); }

    void activate()
    {
        screens.form()->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(screens.form()));
    }

    void set(const char* box, const std::string& text) { get<QLineEdit>(box).setText(QString::fromStdString(text)); }
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
    void alt(Qt::Key letter) { key(letter, Qt::AltModifier); }
    std::string focus() { return QApplication::focusWidget()->objectName().toStdString(); }

    /// Presses Tab `steps` times and gives the names of the controls it leaves.
    std::string tabStops(int steps)
    {
        std::string names;
        for (int step = 0; step < steps; ++step) {
            names += focus() + " ";
            key(Qt::Key_Tab);
        }
        return names;
    }

    /// What a control shows: caption, text, or the selected entry.
    static std::string textOf(const QWidget& control)
    {
        if (auto* const combo = qobject_cast<const QComboBox*>(&control))
            return combo->currentText().toStdString();
        if (auto* const list = qobject_cast<const QListWidget*>(&control))
            return list->currentItem()->text().toStdString();
        for (const char* const property : {"text", "title"})
            if (const QVariant text = control.property(property); text.isValid())
                return text.toString().toStdString();
        return {};
    }

    /// Expects a control at a place in twips: left, top, and width and height where a control is not a label. "to"
    /// begins the place of a right-aligned label, by its right edge.
    static void expectPlace(const QWidget& control, const QWidget& origin, const std::string& place)
    {
        const QPoint at = control.mapTo(&origin, QPoint());
        const std::string size = std::to_string(control.width() * 15) + " " + std::to_string(control.height() * 15);
        std::string expected = place;
        std::string found = std::to_string(at.x() * 15) + " " + std::to_string(at.y() * 15);
        if (place.starts_with("to "))
            found = "to " + std::to_string((at.x() + control.width()) * 15) + " " + std::to_string(at.y() * 15);
        else if (qobject_cast<const QLabel*>(&control) != nullptr)
            expected = place.substr(0, place.find(' ', place.find(' ') + 1));
        else
            found += " " + size;
        EXPECT_EQ(found, expected) << control.objectName().toStdString();
    }

    const TemporaryDirectory home;
    const std::filesystem::path dataFile = home.path / "capacities.mdb";
    GivenLocale locale{"."};
    RecordedMessages messages;
    RecordingPrinters printers;
    Screens screens;
};

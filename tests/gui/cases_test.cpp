#include "gui/screens_fixture.h"

#include "app/main_form_layout.h"
#include "app/setup_form_layout.h"
#include "lists/duty_list.h"

#include <set>
#include <sstream>

namespace
{

class CasesInWindows : public ScreensTest
{
protected:
    /// A listed gas is picked, another one typed.
    void pickOrTypeGas(const std::string& name)
    {
        auto& box = get<QComboBox>("cmbBlanketingGas");
        const int at = box.findText(QString::fromStdString(name));
        box.setEditText(QString::fromStdString(name));
        if (at >= 0) {
            box.setCurrentIndex(at);
            emit box.activated(at);
        }
    }
};

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
        if (!row["Refused At"].empty()) {
            EXPECT_EQ(focus(), row["Refused At"]) << row.where();
        }
    }
}

/// A list gives what the windows show, whatever is chosen and whatever is left to the defaults.
TEST_F(CasesInWindows, AndListsGiveTheSame)
{
    const struct
    {
        const char* entries[std::size(entryColumns)]; ///< "" leaves the default
        const char* gas;
    } duties[] = {
        {{"100", "10", "1000", "", "", "120"}, ""},      {{"80", "100", "500", "1.52", "", ""}, ""},
        {{"60", "1.5", "9000", "1.38", "200", ""}, "Argon"}, {{"5", "26", "2000000", "0.6", "", "20"}, "Methane"},
        {{"300", "2", "4000", "", "", "30"}, "Air"},     {{"", "2", "", "", "", ""}, "Dry CO2"},
        {{"120000", "2", "3", "", "", "9"}, ""},
    };
    for (const Offer& offer : offers)
        for (const std::string method : {choice::api2000, choice::directDisplacement}) {
            std::string text = "Valve Model,Valve Type,Units of Measure,Units of Pressure,Sizing Method,Gas";
            for (const auto& [column, box] : entryColumns)
                text += std::string(",") + column;
            const std::string setup = std::string(offer.valveModel) + "," + offer.valveType + "," + offer.unitSystem +
                                      "," + offer.pressUnits + "," + method;
            for (const auto& [entries, gas] : duties) {
                text += "\n" + setup + "," + gas;
                for (const char* const entry : entries)
                    text += std::string(",") + entry;
            }
            std::istringstream in(text);
            DutyList list(in, testTables());
            for (std::size_t at = 0; at < std::size(duties); ++at) {
                messages.texts.clear();
                openMain(std::string(offer.valveModel) + ", " + offer.valveType + ", " + method + ", " +
                         offer.unitSystem + ", " + offer.pressUnits);
                if (const std::string name = duties[at].gas; !name.empty())
                    pickOrTypeGas(name);
                for (std::size_t column = 0; column < std::size(entryColumns); ++column) {
                    const char* const box = boxNames[static_cast<std::size_t>(entryColumns[column].box)];
                    if (*duties[at].entries[column] != '\0' && get<QLineEdit>(box).isVisible())
                        set(box, duties[at].entries[column]);
                }
                press("cmdCalcFlowRate");
                const std::string where = setup + ", duty " + std::to_string(at);
                const auto listed = list.next();
                ASSERT_TRUE(listed && listed->sizing) << where;
                for (std::size_t label = 0; label < std::size(labelNames); ++label)
                    EXPECT_EQ(listed->sizing->screen.caption(static_cast<Label>(label)), shown(labelNames[label]))
                        << where << ": " << labelNames[label];
                EXPECT_EQ(listed->sizing->messages.texts, messages.texts) << where;
            }
        }
}

TEST_F(CasesInWindows, TheSetupFormLooksAsTheCaseFileSays)
{
    std::set<std::string> unnamed;
    for (const ControlRow& row : setupFormRows)
        unnamed.insert(row.name);
    for (const Case& row : readCases("setup_form.csv")) {
        unnamed.erase(row["Control"]);
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
    EXPECT_EQ(unnamed, std::set<std::string>()) << "these have no row in setup_form.csv";
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
    EXPECT_EQ(get<QComboBox>("cmbBlanketingGas").count(), readCases("gases.csv").size());
}

} // namespace

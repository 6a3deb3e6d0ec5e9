#include "app/setup_form.h"

#include "app/key_filter.h"
#include "app/setup_form_layout.h"
#include "app/sizing_state.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

namespace
{

/// The pressure units that a model and valve type offer in each unit system; nullptr: either type.
struct UnitRow
{
    const char* valveModel;
    const char* valveType;
    QStringList usPressure;
    QStringList metricPressure;
};

const UnitRow unitRows[] = {
    {"Series 61", nullptr, {"PSI"}, {"kg/cm2", "kPa"}},
    {"Series 63", "Pad", {"PSI"}, {"kg/cm2", "kPa"}},
    {"Series 63", "Depad", {"PSI", "in wc"}, {"mbar"}},
};

struct TablePrefix
{
    const char* pressUnits;
    const char* prefix;
};

constexpr TablePrefix tablePrefixes[] = {
    {"PSI", "psi_"}, {"in wc", "inwc_"}, {"kg/cm2", "kgcm2_"}, {"kPa", "kpa_"}, {"mbar", "mbar_"},
};

struct CustomerBox
{
    const char* box;
    std::string SizingState::*field;
};

constexpr CustomerBox customerBoxes[] = {
    {"txtCustomerName", &SizingState::CustomerName}, {"txtCustomerLocation", &SizingState::CustomerLocation},
    {"txtCustTagNo", &SizingState::CustTagNo},       {"txtNotes", &SizingState::Notes},
    {"txtORMRep", &SizingState::Representative},
};

/// The caption above each list, which has no access key, names it to screen readers.
constexpr const char* listCaptions[][2] = {
    {"lblPressureUnits", "lstPressure"}, {"lblFlow", "lstFlow"}, {"lblTemp", "lstTemp"}, {"lblVolume", "lstVolume"}};

} // namespace

SetupForm::SetupForm(SizingState& state, const LocaleInfo& locale) : state_(state)
{
    setObjectName(QStringLiteral("frmFirst"));
    setWindowTitle(
        QStringLiteral("Halvor-ORM  Blanketing Valve Sizing Application - Version " SIZING_VERSION)); // two spaces
    buildForm(*this, setupFormRows, FrameOrigin::frame, setupFormWidth, setupFormHeight);
    for (const char* const frame : {"frmPadDepad", "frmDDAPI"})
        paintLightGrey(control<QGroupBox>(*this, frame));
    for (const auto& [caption, list] : listCaptions) {
        auto& label = control<QLabel>(*this, caption);
        label.setBuddy(&this->list(list));
        this->list(list).setAccessibleName(label.text());
    }
    connectHandlers();

    resetState(locale);
    option("optUSUnits").setChecked(true);
    option("optSeries61").setChecked(true);
    option("optDepad").setEnabled(false);
    option("optPad").setChecked(true);
    option("optAPI2000").setChecked(true);
    for (const CustomerBox& row : customerBoxes)
        control<QLineEdit>(*this, row.box).setText(QString::fromStdString(state_.*row.field));

    option("optSeries61").setFocus();
    centreOnScreen(*this);
}

void SetupForm::resetState(const LocaleInfo& locale)
{
    state_.InputError = false;
    state_.SizingError = false;
    modDecSep(state_, locale);
    state_.ValidChars = "1234567890" + state_.DecSep;
    const SizingState defaults;
    state_.UnitSystem = defaults.UnitSystem;
    state_.ValveType = defaults.ValveType;
    state_.SizingMethod = defaults.SizingMethod;
    state_.SizingCase = defaults.SizingCase;
    state_.ValveModel = defaults.ValveModel;
}

void SetupForm::connectHandlers()
{
    const auto onSelect = [this](const char* name, auto handler) {
        connect(&option(name), &QRadioButton::toggled, this, [handler](bool selected) {
            if (selected)
                handler();
        });
    };
    onSelect("optUSUnits", [this] { optUSUnits_Click(); });
    onSelect("optMetricUnits", [this] { optMetricUnits_Click(); });
    onSelect("optSeries61", [this] { optSeries61_Click(); });
    onSelect("optSeries63", [this] { optSeries63_Click(); });
    onSelect("optPad", [this] { optPad_Click(); });
    onSelect("optDepad", [this] { optDepad_Click(); });
    onSelect("optAPI2000", [this] { state_.SizingMethod = "API-2000"; });
    onSelect("optDD", [this] { state_.SizingMethod = "Direct Displacement"; });
    connect(&control<QPushButton>(*this, "cmdContinue"), &QPushButton::clicked, this, &SetupForm::cmdContinue_Click);
}

void SetupForm::optUSUnits_Click()
{
    state_.UnitSystem = "US";
    fillPressureAndFlow();
    fillTemperatureAndVolume("Fahrenheit", "Gallons");
}

void SetupForm::optMetricUnits_Click()
{
    state_.UnitSystem = "Metric";
    fillPressureAndFlow();
    fillTemperatureAndVolume("Celcius", "Cubic Meters");
}

void SetupForm::optSeries61_Click()
{
    state_.ValveModel = "Series 61";
    option("optDepad").setEnabled(false);
    // The model has no depad valve and the data file no table for one.
    if (option("optDepad").isChecked())
        option("optPad").setChecked(true);
    fillPressureAndFlow();
}

void SetupForm::optSeries63_Click()
{
    state_.ValveModel = "Series 63";
    option("optDepad").setEnabled(true);
    fillPressureAndFlow();
}

void SetupForm::optPad_Click()
{
    state_.ValveType = "Pad";
    fillPressureAndFlow();
}

void SetupForm::optDepad_Click()
{
    state_.ValveType = "Depad";
    fillPressureAndFlow();
}

void SetupForm::fillPressureAndFlow()
{
    const auto selected = [this](const char* name, const char* text) { return option(name).isChecked() ? text : ""; };
    const std::string model = std::string(selected("optSeries61", "Series 61")) + selected("optSeries63", "Series 63");
    const std::string type = std::string(selected("optPad", "Pad")) + selected("optDepad", "Depad");
    const bool us = option("optUSUnits").isChecked();
    const bool metric = option("optMetricUnits").isChecked();

    QStringList pressure;
    for (const UnitRow& row : unitRows)
        if (model == row.valveModel && (row.valveType == nullptr || type == row.valveType))
            pressure = us ? row.usPressure : metric ? row.metricPressure : QStringList();
    QStringList flow;
    if (!pressure.isEmpty())
        flow = QStringList(us ? "SCFH" : "Nm3/Hr");
    fillList(list("lstPressure"), pressure);
    fillList(list("lstFlow"), flow);
}

void SetupForm::fillTemperatureAndVolume(const char* temperature, const char* volume)
{
    fillList(list("lstTemp"), {temperature});
    fillList(list("lstVolume"), {volume});
}

void SetupForm::cmdContinue_Click()
{
    if (option("optUSUnits").isChecked()) {
        state_.UnitSystem = "US";
        state_.PumpRateUnits = "gpm";
    } else if (option("optMetricUnits").isChecked()) {
        state_.UnitSystem = "Metric";
        state_.PumpRateUnits = "m3/Hr";
    }
    state_.PressUnits = list("lstPressure").currentItem()->text().toStdString();
    state_.FlowUnits = list("lstFlow").item(0)->text().toStdString();
    state_.VolUnits = list("lstVolume").item(0)->text().toStdString();
    state_.ValveModel = option("optSeries61").isChecked() ? "Series 61" : "Series 63";
    for (const TablePrefix& row : tablePrefixes)
        if (state_.PressUnits == row.pressUnits)
            state_.ValveTable = row.prefix + state_.ValveType;
    for (const CustomerBox& row : customerBoxes)
        state_.*row.field = control<QLineEdit>(*this, row.box).text().toStdString();
    emit continued();
}

QRadioButton& SetupForm::option(const char* name) const
{
    return control<QRadioButton>(*this, name);
}

QListWidget& SetupForm::list(const char* name) const
{
    return control<QListWidget>(*this, name);
}

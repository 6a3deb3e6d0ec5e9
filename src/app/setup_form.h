#pragma once

#include "app/setup_form_layout.h"
#include "app/sizing_state.h"

#include <QWidget>

class LocaleInfo;

/// `frmFirst`, the first window: valve model, valve type, sizing method, units and customer information. Creating it is
/// its load: the record's flags and choices go back to their defaults, the customer information stays.
class SetupForm : public QWidget
{
    Q_OBJECT

public:
    SetupForm(SizingState& state, const LocaleInfo& locale);

signals:
    /// "&Continue" was pressed; the choices, unit names, table name and customer texts stand in the record.
    void continued();

private:
    void connectHandlers();

    void Form_Load(const LocaleInfo& locale);
    void optPad_Click() { chooseType(choice::pad); }
    void optDepad_Click() { chooseType(choice::depad); }
    void optDD_Click() { state_.SizingMethod = choice::directDisplacement; }
    void optAPI2000_Click() { state_.SizingMethod = choice::api2000; }
    void optUSUnits_Click() { chooseUnits(choice::us); }
    void optMetricUnits_Click() { chooseUnits(choice::metric); }
    void cmdContinue_Click();

    void resetState(const LocaleInfo& locale);
    void chooseModel(const char* valveModel);
    void chooseType(const char* valveType);
    void chooseUnits(const char* unitSystem);

    /// Refills the pressure and flow lists for the selected options; they stay empty while an option is missing.
    void fillPressureAndFlow();

    Controls<setupFormRows> controls_;
    SizingState& state_;
};

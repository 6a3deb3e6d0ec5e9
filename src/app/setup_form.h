#pragma once

#include <QWidget>

class LocaleInfo;
class QListWidget;
class QRadioButton;
struct SizingState;

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
    void optUSUnits_Click();
    void optMetricUnits_Click();
    void optSeries61_Click();
    void optSeries63_Click();
    void optPad_Click();
    void optDepad_Click();
    void cmdContinue_Click();

    void resetState(const LocaleInfo& locale);
    void connectHandlers();

    /// Refills the pressure and flow lists for the selected options; they stay empty while an option is missing.
    void fillPressureAndFlow();
    void fillTemperatureAndVolume(const char* temperature, const char* volume);

    QRadioButton& option(const char* name) const;
    QListWidget& list(const char* name) const;

    SizingState& state_;
};

#pragma once

#include "app/setup_form_layout.h"

#include <QWidget>

class LocaleInfo;
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
    struct Handlers; ///< of its controls, named after control and event

    Controls<setupFormRows> controls_;
};

#pragma once

#include "app/sizing_state.h"
#include "base/number_text.h"
#include "base/sizing_context.h"
#include "capacity/capacity_store.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

class LocaleInfo;
class MainForm;
class MessageBox;
class Printers;
class QMenuBar;

/// Loads, shows and unloads the two forms; only one of them exists at a time. Owns the record and what the sizing
/// routines reach. The program ends when the window that is open closes.
class Screens : public QObject
{
    Q_OBJECT

public:
    /// `capacityFile` is the path of the capacity data file, UTF-8.
    Screens(const LocaleInfo& locale, MessageBox& messageBox, Printers& printers, std::string capacityFile);
    ~Screens() override;

    void showSetup();
    void showMain();

    SizingState& state() { return state_; }
    QWidget* form() const { return form_; }

private:
    /// Shows the new form below its menu bar, then unloads the one before.
    void replaceForm(QWidget& form, QMenuBar& bar);

    /// The context menu of a form, its keys, and its menu bar; without a main form there are no results.
    QMenuBar& addMenus(QWidget& form, MainForm* mainForm);
    static void addContextMenu(QWidget& form);
    static void addBoxHelp(QWidget& form);
    SizingContext sizingContext(MainForm& mainForm);
    void saveSummary(MainForm& mainForm);

    const LocaleInfo& locale_;
    MessageBox& messageBox_;
    Printers& printers_;
    SizingState state_;
    NumberText numbers_;
    std::string dataFile_;
    CapacityStore store_; ///< refers to the numbers
    QPointer<QWidget> form_;
};

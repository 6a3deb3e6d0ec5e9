#pragma once

#include "app/main_form_layout.h"
#include "base/main_screen.h"
#include "base/sizing_context.h"

#include <QLabel>
#include <QLineEdit>
#include <QWidget>

#include <string>
#include <vector>

class Announcer;
class GasBox;
class NumericBox;

/// `frmMain`, the working window: takes the duty, runs a sizing and shows the valve. Creating it is its load from the
/// choices in the record. It is the `MainScreen` that engine and report read and write.
class MainForm : public QWidget, public MainScreen
{
    Q_OBJECT

public:
    MainForm(SizingState& state, MessageBox& messageBox, const NumberText& numbers, CapacityStore& store);

    std::string text(Box box) const override;
    std::string caption(Label label) const override;
    void setCaption(Label label, const std::string& text) override;
    void refusedAt(Box box) override;
    void modClearData() override;
    void setPrintEnabled(bool enabled) override;

    /// Has what a click has come to heard by a screen reader, and scrolls it into view.
    void tellOutcome();

    /// Has the printer that took the page seen at the button, and heard.
    void tellPrinted(const QString& printer);

    /// Choices, entries and results, a line each: caption, value and unit, with tabs between. What is empty or not
    /// shown is left out.
    QString resultsText() const;

signals:
    /// "Size &New Valve" was pressed.
    void newCalcRequested();
    /// "E&xit" was pressed.
    void exitRequested();
    /// "Prin&t" was pressed.
    void printRequested();

private:
    void connectHandlers();
    /// What screen readers say of the controls beside their captions, and their tooltips.
    void describeControls();
    void load();
    void loadValveType();

    void selectValve();
    void cmbBlanketingGas_Click();
    void cmbBlanketingGas_Change();
    void cmdClear_Click();
    void cmdNewCalc_Click();
    void cmdExit_Click();

    /// What a click has come to, in one sentence: the valve with the comments, or why there is none.
    QString outcome() const;

    /// Puts the name of the gas with the entered specific gravity into the gas box; nothing for any other.
    void nameGas();
    /// Results never stand beside figures they were not made from. (The gravity that the capacity refers to stays; the
    /// tank volume says nothing of the flash or boiling point and keeps its note.)
    void emptyResultLabels(bool keepPointNote);

    void setLabelCaption(MainControl name, const std::string& text);
    void setText(MainControl box, const std::string& entry);
    /// Hides the boxes that the choices do not ask for, with their captions and units.
    void hideUnasked();

    Controls<mainFormRows> controls_;
    SizingContext sizing_;
    GasBox& gas_;
    std::vector<std::vector<QLabel*>> rows_; ///< labels that must not run into each other
    NumericBox* refused_ = nullptr;          ///< the box that the refusal of this click is about
    Announcer& announcer_;
};

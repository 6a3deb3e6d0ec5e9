#pragma once

#include "report/summary_layout.h"

#include <array>
#include <iterator>
#include <string>

class MainScreen;
class MessageBox;
class NumberText;
struct SizingState;

/// `frmPrint`, the one-page sizing summary: what it says. It is never on the screen: creating it fills it, then it is
/// painted (platform/summary_painter).
class SummaryForm
{
public:
    /// What a control shows (UTF-8); the page starts with the design texts, everything visible.
    struct Shown
    {
        std::string text;
        bool visible = true;
    };

    /// Fills the page from the record; `today` is the date in the user's short form. A failure (such as a percentage
    /// beyond 16 bits): message, `modClearData`, and the page stays as far as it was filled.
    SummaryForm(const SizingState& state, const NumberText& numbers, const std::string& today, MainScreen& screen,
                MessageBox& messageBox);

    /// The title of the form and of its print job.
    static constexpr const char* caption = "ORM - Valve Sizing Summary";

    /// What a control shows now.
    const Shown& shown(SummaryControl control) const { return shown_[control.index]; }

    /// What all controls show now, row by row of the layout.
    const auto& rows() const { return shown_; }

private:
    /// `Form_Load`: all texts, then what the sizing case shows and hides.
    void fill(const SizingState& state, const NumberText& numbers, const std::string& today);
    void showCase(const SizingState& state);
    Shown& at(SummaryControl control) { return shown_[control.index]; }

    std::array<Shown, std::size(summaryRows)> shown_;
};

#pragma once

#include "report/summary_layout.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

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

    /// What a control shows now; it must be in the layout.
    const Shown& shown(std::string_view name) const;

    /// The same by its row in the layout.
    const Shown& shown(std::size_t row) const { return shown_[row]; }

private:
    /// `Form_Load`: all texts, then what the sizing case shows and hides.
    void fill(const SizingState& state, const NumberText& numbers, const std::string& today);
    void showCase(const SizingState& state);
    Shown& at(std::string_view name);

    std::array<Shown, std::size(summaryRows)> shown_;
};

#pragma once

#include "report/summary_layout.h"

#include <QString>
#include <QTransform>

#include <array>
#include <iterator>
#include <string_view>

class MainScreen;
class MessageBox;
class NumberText;
class QPainter;
class QPrinter;
struct SizingState;

/// `frmPrint`, the one-page sizing summary. It is never on the screen: creating it fills it, then it is painted.
class SummaryForm
{
public:
    /// What a control shows; the page starts with the design texts, everything visible.
    struct Shown
    {
        QString text;
        bool visible = true;
    };

    /// Fills the page from the record. A failure (such as a percentage beyond 16 bits): message, `modClearData`, and
    /// the page stays as far as it was filled.
    SummaryForm(const SizingState& state, const NumberText& numbers, MainScreen& screen, MessageBox& messageBox);

    /// The title of the form and of its print job.
    static QString caption();

    /// What a control shows now; it must be in the layout.
    const Shown& shown(std::string_view name) const;

    /// Paints the form as one page, black on white, and throws when the printer cannot be painted on.
    void paint(QPrinter& printer) const;

    /// Paints the form with one twip as the painter's unit.
    void paint(QPainter& painter) const;

private:
    /// `Form_Load`: all texts, then what the sizing case shows and hides.
    void fill(const SizingState& state, const NumberText& numbers);
    void showCase(const SizingState& state);
    Shown& at(std::string_view name);

    std::array<Shown, std::size(summaryRows)> shown_;
};

/// Where the summary stands on a page whose size and printable part are given in twips: in the middle, moved only as
/// far as the printable part needs it, and shrunk evenly only where that part is smaller than the summary.
QTransform placeSummary(const QSizeF& paper, const QRectF& printable);

#pragma once

#include "base/named_row.h"

#include <QFont>
#include <QLabel>
#include <QPalette>
#include <QString>
#include <QWidget>

#include <algorithm>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

class QPushButton;

/// What a row of a form's layout table becomes.
enum class Kind
{
    frame,
    boldFrame,
    option,
    label,
    rightLabel, ///< ends at a given right edge, however long its caption is
    boldLabel,
    wrappedLabel,
    textBox,
    numericBox,
    comboBox,
    list,
    button
};

/// One control of a form. Positions are in twips (1/1440 inch). A label takes the size of its caption
/// where its stated one is smaller.
struct ControlRow
{
    const char* name; ///< objectName
    Kind kind;
    const char* frame;   ///< the frame it stands in; nullptr: on the form itself
    const char* caption; ///< "&" marks the access key
    int left;            ///< of a rightLabel: its right edge
    int top;
    int width = 0;
    int height = 0;
};

/// Whether the positions of controls inside a frame count from the frame or from the form.
enum class FrameOrigin
{
    frame,
    form
};

/// Logical pixels for a distance in twips; Qt scales the rest.
constexpr int pixels(int twips)
{
    return twips / 15;
}

/// The screens' font: 8.25 pt at 96 dpi.
QFont screenFont();

/// The program's colours, to be set on the application: the desktop's own, but light ones where the desktop is dark,
/// for the working window is light grey everywhere, and a selection dark enough for white text.
QPalette screenColours();

/// Whether every control stands on the form itself or in a frame of an earlier row.
consteval bool framesStandFirst(std::span<const ControlRow> rows)
{
    return std::ranges::all_of(rows, [&](const ControlRow& row) {
        return row.frame == nullptr || std::ranges::any_of(rows.data(), &row, [&](const ControlRow& earlier) {
                   return std::string_view(earlier.name) == row.frame;
               });
    });
}

/// Creates the controls of `rows` on `form` and gives it its fixed client size (twips). The rows stand in tab order: a
/// label's access key leads to the next row that takes the focus, which also takes its caption as accessible name.
/// Gives the controls, row by row.
std::vector<QWidget*> buildForm(QWidget& form, std::span<const ControlRow> rows, FrameOrigin origin, int width,
                                int height);

/// Changes a label's caption, keeps its position (a right-aligned one its right edge), and the accessible name of the
/// control it captions.
void setLabelCaption(QLabel& label, const QString& caption);

/// Lets the labels of one row that have grown into their right-hand neighbour push it on; the others stand at the
/// positions they were created with. Where the last would end beyond `rightEdge` (pixels of their parent), the row
/// moves together to the left as far as there is room. `row` is in order from the left.
void keepApart(std::span<QLabel* const> row, int rightEdge);

/// Light grey background with black text on it and white boxes, whatever the desktop's theme.
void paintLightGrey(QWidget& widget);

/// Puts a window, with its frame where it has one already, in the middle of its screen; one that is larger than the
/// screen starts at its top-left corner.
void centreOnScreen(QWidget& window);

/// Has a button of the form run the handler when it is clicked, but not while a dialog stands before the form: a screen
/// reader can press a button there, in the middle of the handler that shows the dialog.
void onClick(QPushButton& button, QWidget& form, const std::function<void()>& handler);

/// Where the window scrolls the form, scrolls it so that the control is seen whole.
void scrollIntoView(QWidget& control);

/// The controls of a form, by their names in its layout table.
template <const auto& rows>
class Controls
{
    static_assert(framesStandFirst(rows));

public:
    Controls(QWidget& form, FrameOrigin origin, int width, int height)
        : widgets_(buildForm(form, rows, origin, width, height))
    {
    }

    /// A control that is of another kind ends the program.
    template <typename Control>
    Control& get(NamedRow<rows> name) const
    {
        auto* const found = qobject_cast<Control*>(widgets_[name.index]);
        if (found == nullptr)
            qFatal("%s is another kind of control", rows[name.index].name);
        return *found;
    }

private:
    std::vector<QWidget*> widgets_;
};

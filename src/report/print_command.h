#pragma once

class MainScreen;
class MessageBox;
class NumberText;
class Printers;
class QWidget;
struct SizingState;

/// What the print command reaches.
struct PrintContext
{
    SizingState& state;
    MainScreen& screen;
    QWidget& cmdPrint; ///< the button, disabled where there is no printer
    MessageBox& messageBox;
    const NumberText& numbers;
    Printers& printers;
};

/// One press of "Prin&t": prints the summary of the last sizing as one page. Nothing sized: says so in `lblComments`.
/// Any failure ends in a message; the program stays usable.
void cmdPrint_Click(const PrintContext& print);

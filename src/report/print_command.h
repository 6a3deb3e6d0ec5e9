#pragma once

#include <string>

class MainScreen;
class MessageBox;
class NumberText;
class Printers;
struct SizingState;

/// What the print command reaches.
struct PrintContext
{
    SizingState& state;
    MainScreen& screen;
    MessageBox& messageBox;
    const NumberText& numbers;
    Printers& printers;
    std::string today; ///< in the user's short date form
};

/// One press of "Prin&t": prints the summary of the last sizing as one page. Nothing sized: says so in `lblComments`.
/// No printer: says so and disables the button. Any failure ends in a message; the program stays usable.
void cmdPrint_Click(const PrintContext& print);

#pragma once

#include <string>

class MessageBox;

/// Says which program this is, what its data file is and since when it is there, and the licences of the libraries.
/// `dataFile` is a path in UTF-8.
void showAbout(MessageBox& messageBox, const std::string& dataFile);

/// The operating system, as reports name it.
std::string systemName();

/// Opens the user guide that stands beside the program, with the desktop's own viewer; says so when it cannot.
void openUserGuide(MessageBox& messageBox);

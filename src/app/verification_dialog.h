#pragma once

#include <string>

class QWidget;

/// Sizes the verification list beside the program and shows the report over the window of `form`. `dataFile` is a path
/// in UTF-8.
void showVerification(QWidget& form, const std::string& dataFile);

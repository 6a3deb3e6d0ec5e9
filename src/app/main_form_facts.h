#pragma once

#include "app/main_form_layout.h"

#include <string>

struct SizingState;

/// Has screen readers say the caption or the unit beside each value of the main form.
void describeValues(const Controls<mainFormRows>& controls);

/// Hides the boxes that a sizing case does not ask for, with their captions and units.
void hideUnasked(const Controls<mainFormRows>& controls, const std::string& sizingCase);

/// Choices, entries and results, a line each: caption, tab, value and unit. What is empty or not shown is left out.
QString resultsText(const Controls<mainFormRows>& controls, const SizingState& state);

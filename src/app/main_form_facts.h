#pragma once

#include "app/main_form_layout.h"

struct SizingState;

/// Has screen readers say the caption or the unit beside each value of the main form.
void describeValues(const Controls<mainFormRows>& controls);

/// Choices, entries and results, a line each: caption, value and unit, with tabs between. What is empty or not shown is
/// left out.
QString resultsText(const Controls<mainFormRows>& controls, const SizingState& state);

/// Hides a value with its caption and its unit.
void hideFact(const Controls<mainFormRows>& controls, MainControl value);

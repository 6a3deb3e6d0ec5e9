#pragma once

/// Gives every entry box its own voice to screen readers instead of the toolkit's, whose search for the word at the
/// begin or the end of some texts never returns (Qt 6.4: Ctrl+Left with a screen reader running froze the program),
/// makes forms windows to them, and an `Announcer` a notification. Once, before the first form.
void installBoxAccessibility();

#pragma once

#include <optional>
#include <string>

/// Inches of a body size such as 1/2", 1 1/2", 1-1/2 in, 1½", 0.5 or DN 50; nullopt for any other
/// text. A number without a unit is in inches below 10, and a DN from 10 on.
std::optional<double> inchesOf(std::string bodySize);

/// Whether a text is what a spreadsheet makes of a size like 1/2: "01. Feb", "2-Jan", "01.02.2026",
/// "46054".
bool isMadeADate(const std::string& bodySize);

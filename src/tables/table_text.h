#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

class Findings;
struct Rule;

extern const Rule fileTooLarge;

/// The bytes of the file of a table; nullopt for one that cannot be read, which is reported. One whose name has other
/// capitals is reported and read: spreadsheets and mails change them, and some systems do not tell such names apart.
std::optional<std::string> bytesOf(std::filesystem::path path, Findings& findings);

/// A text in UTF-8, and what it was written in.
struct TableText
{
    std::string text;     ///< without a byte-order mark
    const char* encoding; ///< nullptr for UTF-8; else what it seems to be
    std::size_t line = 1; ///< where that is seen first
};

/// Reads bytes as UTF-8; where they are not, as UTF-16 or Windows-1252, so that the rest can be looked at.
TableText decoded(const std::string& bytes);

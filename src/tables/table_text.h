#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

class Findings;
struct Rule;

extern const Rule fileTooLarge;

/// The bytes of a table's file; nullopt when it cannot be read, which is reported. A file whose
/// name has other capitals is reported and read: spreadsheets and mails change capitals, and some
/// systems take such names for the same.
std::optional<std::string> bytesOf(std::filesystem::path path, Findings& findings);

/// A text in UTF-8, and the encoding that it came in.
struct TableText
{
    std::string text;     ///< without a byte-order mark
    const char* encoding; ///< nullptr for UTF-8; else what it seems to be
    std::size_t line = 1; ///< the first line that shows it
};

/// Reads bytes as UTF-8. Bytes that are not UTF-8 are read as UTF-16 or Windows-1252, so that the
/// table can be checked.
TableText decoded(const std::string& bytes);

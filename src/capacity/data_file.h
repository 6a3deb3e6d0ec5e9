#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// The largest data file that is read, in bytes: half as much again as all tables need with the most rows that
/// `build_capacities` takes, and what can be checked and walked within two seconds.
inline constexpr std::uint64_t largestDataFile = 16 << 20;

/// The bytes of a data file; nullopt when they are those of `before`.
///
/// A file in the middle of another program's change (with a journal that is in use or a write-ahead log beside it, or
/// changing while it is read, or changed a moment ago as by a copy on its way) is waited for, two seconds at most.
/// Throws SilentFailure with the reason, which follows the file's name, when it cannot be read.
std::optional<std::string> readDataFile(const std::filesystem::path& path, const std::string& before);

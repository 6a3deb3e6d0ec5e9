#pragma once

#include <cstdint>
#include <string>

/// The largest data file that is read, in bytes: some hundred times the shipped one, and what can be checked and walked
/// within two seconds.
inline constexpr std::uint64_t largestDataFile = 48 << 20;

/// Reads a data file whole into `bytes`, which may hold what was read before: gives whether it is new. `path` is UTF-8.
///
/// A file in the middle of another program's change (with a journal that is in use or a write-ahead log beside it, or
/// changing while it is read) is waited for, two seconds at most. Throws SilentFailure with the reason, which follows
/// the file's name, when it cannot be read.
bool readDataFile(const std::string& path, std::string& bytes);

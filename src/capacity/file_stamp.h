#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// What tells one state of a file from another: device, file number, size, and the times of its last change.
struct FileStamp
{
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::uint64_t size = 0;
    std::int64_t modified = 0; ///< nanoseconds since 1970, as exact as the system keeps them
    std::int64_t changed = 0;  ///< of its contents, name, owner or mode

    bool operator==(const FileStamp&) const = default;

    /// Whether the last change is so long ago that another one would have another time, on every file system.
    bool isSettled() const;
};

/// The stamp of the file at `path` (UTF-8); nullopt when there is none.
std::optional<FileStamp> stampOf(const std::string& path);

#pragma once

#include <cstdio>
#include <filesystem>
#include <string_view>

/// A file that is written beside another one and then takes its place in one step. Until then, and
/// after any failure, the other file is unchanged. A link is followed: the file that it points to
/// is replaced. Every failure throws std::runtime_error with the operating system's reason.
///
/// Where the file system can, the new file has no name until it is whole: nothing stays of a killed
/// run. Elsewhere it is FILE.new-XXXXXX, and stays then: its name does not prove who made it. No
/// other file is ever removed.
class ReplacementFile
{
public:
    /// Opens a file beside `file`. It has the mode, owner and group of `file`, or
    /// `newMode` when there is no `file`.
    explicit ReplacementFile(const std::filesystem::path& file,
                             std::filesystem::perms newMode = std::filesystem::perms(0644));
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// Removes the new file unless it was put in place.
    ~ReplacementFile();

    void write(std::string_view bytes);

    /// Replaces the other file. Everything is on the disk when this returns.
    void putInPlace();

    /// The same, but it fails with "it exists already" when there is a file by now.
    void putInFreePlace();

private:
    void discard();
    void finish();
    std::filesystem::path freeName() const;

    std::filesystem::path target;
    std::filesystem::path temporary; ///< empty: it has no name
    std::FILE* file = nullptr;       ///< nullptr: it is closed
};

#pragma once

#include <cstdio>
#include <filesystem>
#include <string_view>

/// A file that is written beside another one and then put in its place in one step. Until then, and after any failure,
/// the other one is as it was. A link is followed: what it points to is replaced. Every failure throws
/// std::runtime_error with the operating system's reason.
///
/// No other file is ever removed. What a killed run has left, FILE.new-XXXXXX, stays: its name does not prove whose it
/// is.
class ReplacementFile
{
public:
    /// Opens a file beside `file` under a name that no other file has, with the mode, owner and group of `file`, or the
    /// mode of a new one: readable by everybody.
    explicit ReplacementFile(const std::filesystem::path& file,
                             std::filesystem::perms newMode = std::filesystem::perms(0644));
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// Removes what has not been put in place.
    ~ReplacementFile();

    void write(std::string_view bytes);

    /// Everything written is on the disk when this returns.
    void putInPlace();

    /// The same, but a file that is there by now stays: "it exists already".
    void putInFreePlace();

private:
    void discard();
    void finish();

    std::filesystem::path target;
    std::filesystem::path temporary; ///< empty: there is none
    std::FILE* file = nullptr;       ///< nullptr: it is closed
};

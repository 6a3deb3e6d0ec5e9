#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// A file that is written beside another one and then put in its place in one step. Until then, and after any failure,
/// the other one is as it was. A link is followed: what it points to is replaced. What killed runs have left beside the
/// file is removed. Every failure throws std::runtime_error with the operating system's reason.
class ReplacementFile
{
public:
    /// Opens a file beside `file` under a name that no other run uses, with the mode, owner and group of `file`; a new
    /// one can be read by everybody.
    explicit ReplacementFile(const std::filesystem::path& file);
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// Removes what has not been put in place.
    ~ReplacementFile();

    void write(std::string_view bytes);

    /// Everything written is on the disk when this returns.
    void putInPlace();

private:
    [[noreturn]] void fail();
    bool create();
    void takeAttributes();
    void close();

    std::filesystem::path target;
    std::string temporary; ///< empty: there is none
    int descriptor = -1;
};

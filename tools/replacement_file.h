#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

/// The mode of an ordinary new file of this user: what the umask leaves of reading and writing for all.
mode_t ordinaryMode();

// A file on its way has the name of the one that it replaces, a mark, and an ending that no other run uses.
inline constexpr std::string_view temporaryMark = ".new-";
inline constexpr std::size_t ownEndingLength = 6;

/// The name of the file that a temporary one was made for; "" of any other file.
constexpr std::string_view replacedName(std::string_view temporary)
{
    constexpr std::size_t added = temporaryMark.size() + ownEndingLength;
    if (temporary.size() <= added || !temporary.substr(temporary.size() - added).starts_with(temporaryMark))
        return {};
    return temporary.substr(0, temporary.size() - added);
}

/// Removes what killed runs have left in a directory of the files whose names `isOurs` knows.
void removeLeftovers(const std::filesystem::path& directory, const std::function<bool(std::string_view name)>& isOurs);

/// A file that is written beside another one and then put in its place in one step. Until then, and after any failure,
/// the other one is as it was. A link is followed: what it points to is replaced. Every failure throws
/// std::runtime_error with the operating system's reason.
class ReplacementFile
{
public:
    /// What killed runs have left beside the file.
    enum class Leftovers
    {
        remove,
        leave, ///< where many files are written: the whole directory is read for it
    };

    /// Opens a file beside `file` under a name that no other run uses, with the mode, owner and group of `file`, or the
    /// mode of a new one: readable by everybody.
    explicit ReplacementFile(const std::filesystem::path& file, mode_t newMode = 0644,
                             Leftovers leftovers = Leftovers::remove);
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
    [[noreturn]] void fail();
    void create();
    void takeAttributes(mode_t newMode);
    void syncDirectory();
    void close();

    std::filesystem::path target;
    std::filesystem::path temporary; ///< empty: there is none
    int descriptor = -1;
};

#include "capacity/file_stamp.h"

#include <sys/stat.h>

#include <utility>

namespace
{

/// Of the last change of the contents and of anything, in nanoseconds.
std::pair<std::int64_t, std::int64_t> timesOf(const struct stat& status)
{
    constexpr std::int64_t second = 1'000'000'000;
    return {status.st_mtim.tv_sec * second + status.st_mtim.tv_nsec,
            status.st_ctim.tv_sec * second + status.st_ctim.tv_nsec};
}

} // namespace

std::optional<FileStamp> stampOf(const std::string& path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    const auto [modified, changed] = timesOf(status);
    return FileStamp{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                     static_cast<std::uint64_t>(status.st_size), modified, changed};
}

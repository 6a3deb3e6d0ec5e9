#include "capacity/file_stamp.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>

namespace
{

using namespace std::chrono_literals;

constexpr std::int64_t coarsestTime = std::chrono::nanoseconds(3s).count(); // FAT counts in steps of 2 s

/// Nanoseconds where the system has them, else seconds.
template <typename Status>
std::int64_t modificationTime(const Status& status)
{
    if constexpr (requires { status.st_mtim.tv_nsec; })
        return std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec;
    else
        return std::int64_t{status.st_mtime} * 1'000'000'000;
}

template <typename Status>
std::int64_t changeTime(const Status& status)
{
    if constexpr (requires { status.st_ctim.tv_nsec; })
        return std::int64_t{status.st_ctim.tv_sec} * 1'000'000'000 + status.st_ctim.tv_nsec;
    else
        return std::int64_t{status.st_ctime} * 1'000'000'000;
}

} // namespace

bool FileStamp::isSettled() const
{
    const auto now =
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
            .count();
    const std::int64_t last = modified > now ? changed : std::max(modified, changed); // files can be dated ahead
    return last < now - coarsestTime;
}

std::optional<FileStamp> stampOf(const std::string& path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return FileStamp{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                     static_cast<std::uint64_t>(status.st_size), modificationTime(status), changeTime(status)};
}

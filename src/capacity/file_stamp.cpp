#include "capacity/file_stamp.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace
{

using namespace std::chrono_literals;

constexpr std::int64_t coarsestTime = std::chrono::nanoseconds(3s).count(); // FAT counts in steps of 2 s

/// Of the last change of the contents and of anything: nanoseconds where the system has them, else seconds.
template <typename Status>
std::pair<std::int64_t, std::int64_t> timesOf(const Status& status)
{
    constexpr std::int64_t second = 1'000'000'000;
    if constexpr (requires { status.st_mtim.tv_nsec; })
        return {status.st_mtim.tv_sec * second + status.st_mtim.tv_nsec,
                status.st_ctim.tv_sec * second + status.st_ctim.tv_nsec};
    else
        return {status.st_mtime * second, status.st_ctime * second};
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
    const auto [modified, changed] = timesOf(status);
    return FileStamp{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                     static_cast<std::uint64_t>(status.st_size), modified, changed};
}

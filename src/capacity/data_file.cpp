#include "capacity/data_file.h"

#include "base/failure.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace
{

using namespace std::chrono_literals;

constexpr auto longestWait = 2000ms;
constexpr auto betweenLooks = 20ms;
constexpr auto timeToWrite = 250ms; // from one change of a copy on its way to the next

[[noreturn]] void failForReason()
{
    throw SilentFailure(std::string("cannot be read: ") + std::strerror(errno));
}

std::ifstream open(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        failForReason();
    return in;
}

/// Throws when it is no file that could be read.
std::uint64_t sizeOf(const fs::path& path)
{
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (status.type() == fs::file_type::not_found)
        throw SilentFailure("is missing");
    if (fs::exists(status) && !fs::is_regular_file(status)) // others could be read for ever
        throw SilentFailure("is no file");
    const std::uint64_t size = fs::file_size(path, failure);
    if (failure)
        throw SilentFailure("cannot be read: " + failure.message());
    if (size == 0)
        throw SilentFailure("is empty");
    if (size > largestDataFile)
        throw SilentFailure("is too large: more than " + std::to_string(largestDataFile >> 20) + " MB");
    return size;
}

/// Whether another program is in the middle of a change, or has crashed there. A copy that is written over the file is
/// empty at first, and cut until it is done. A journal that is done with is empty or has its beginning wiped out.
bool isInChange(const fs::path& path)
{
    std::error_code noTime;
    const fs::file_time_type changed = fs::last_write_time(path, noTime);
    const auto age = fs::file_time_type::clock::now() - changed;
    const auto lost = changed.time_since_epoch() % 1s == 0s ? 1s : 0s; // some systems give whole seconds
    if (!noTime && age > -timeToWrite && age < timeToWrite + lost)     // the clock may go in steps
        return true;
    const auto firstByte = [&](const char* ending) {
        fs::path beside = path;
        beside += ending;
        std::error_code unknown;
        if (!fs::is_regular_file(beside, unknown))
            return std::char_traits<char>::eof();
        return std::ifstream(beside, std::ios::binary).get();
    };
    return firstByte("-journal") > 0 || firstByte("-wal") >= 0;
}

bool holds(const fs::path& path, const std::string& bytes)
{
    if (sizeOf(path) != bytes.size())
        return false;
    std::ifstream in = open(path);
    std::vector<char> block(1 << 16);
    std::size_t at = 0;
    while (in.read(block.data(), static_cast<std::streamsize>(block.size())) || in.gcount() > 0) {
        const auto count = static_cast<std::size_t>(in.gcount());
        if (count > bytes.size() - at || std::memcmp(block.data(), bytes.data() + at, count) != 0)
            return false;
        at += count;
    }
    return at == bytes.size();
}

std::string read(const fs::path& path)
{
    std::string bytes(sizeOf(path), '\0');
    std::ifstream in = open(path);
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (in.bad())
        failForReason();
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    return bytes;
}

} // namespace

std::optional<std::string> readDataFile(const fs::path& file, const std::string& before)
{
    std::error_code unknown;
    const fs::path target = fs::canonical(file, unknown); // beside it, not beside a link to it, lies a journal
    const fs::path& path = unknown ? file : target;
    const auto end = std::chrono::steady_clock::now() + longestWait;
    for (;; std::this_thread::sleep_for(betweenLooks)) {
        if (!isInChange(path)) {
            if (holds(path, before))
                return std::nullopt;
            std::string bytes = read(path);
            if (holds(path, bytes) && !isInChange(path)) // the same twice: nobody is writing it
                return bytes;
        }
        if (std::chrono::steady_clock::now() > end)
            throw SilentFailure("is being changed by another program");
    }
}

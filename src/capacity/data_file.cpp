#include "capacity/data_file.h"

#include "base/failure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

namespace fs = std::filesystem;

namespace
{

using namespace std::chrono_literals;

constexpr auto longestWait = 2000ms;
constexpr auto betweenLooks = 20ms;

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
        throw SilentFailure("is too large: " + std::to_string(size >> 20) + " MB, at most " +
                            std::to_string(largestDataFile >> 20));
    return size;
}

/// Whether another program is in the middle of a change, or has crashed there. A journal that is done with is empty or
/// has its beginning wiped out.
bool isInChange(const std::string& path)
{
    const auto firstByte = [&](const char* ending) {
        std::ifstream in(fs::path(std::u8string(path.begin(), path.end()) += reinterpret_cast<const char8_t*>(ending)),
                         std::ios::binary);
        return in ? in.get() : std::char_traits<char>::eof();
    };
    return firstByte("-journal") > 0 || firstByte("-wal") >= 0;
}

bool holds(const fs::path& path, const std::string& bytes)
{
    if (sizeOf(path) != bytes.size())
        return false;
    std::ifstream in = open(path);
    static std::array<char, 1 << 16> block;
    std::size_t at = 0;
    while (in.read(block.data(), block.size()) || in.gcount() > 0) {
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

bool readDataFile(const std::string& name, std::string& bytes)
{
    const fs::path path(std::u8string(name.begin(), name.end()));
    const auto end = std::chrono::steady_clock::now() + longestWait;
    for (;; std::this_thread::sleep_for(betweenLooks)) {
        if (!isInChange(name)) {
            if (!bytes.empty() && holds(path, bytes))
                return false;
            std::string now = read(path);
            if (holds(path, now) && !isInChange(name)) { // the same twice: nobody is writing it
                bytes = std::move(now);
                return true;
            }
        }
        if (std::chrono::steady_clock::now() > end)
            throw SilentFailure("is being changed by another program");
    }
}

#include "files/system.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>

namespace
{

std::atomic<bool> interrupted = false;

std::error_code lastError()
{
    return {static_cast<int>(GetLastError()), std::system_category()};
}

/// The reason in the words that other systems use, when they have a word for it.
std::string lastReason()
{
    return lastError().default_error_condition().message();
}

} // namespace

/// Nothing to do: the C library never uses these numbers for other files.
void holdStandardStreams() {}

void prepareConsole()
{
    SetConsoleCtrlHandler(
        [](DWORD) -> BOOL {
            interrupted = true;
            return TRUE;
        },
        TRUE);
    for (const int stream : {0, 1, 2})
        _setmode(stream, _O_BINARY);
}

bool isInterrupted()
{
    return interrupted;
}

std::string whyUnreadable(const std::filesystem::path& file)
{
    std::error_code failure;
    if (std::filesystem::is_directory(file, failure))
        return "Is a directory";
    const HANDLE opened =
        CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return lastReason();
    CloseHandle(opened);
    return "";
}

/// There is no umask. The access list of the directory decides.
std::filesystem::perms ordinaryMode()
{
    return std::filesystem::perms(0666);
}

/// Nobody else can open it meanwhile.
std::FILE* openNewFile(const std::filesystem::path& file)
{
    int descriptor = -1;
    errno = _wsopen_s(&descriptor, file.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY | _O_NOINHERIT, _SH_DENYRW,
                      _S_IREAD | _S_IWRITE);
    return errno != 0 ? nullptr : _fdopen(descriptor, "wb");
}

std::FILE* openNamelessFile(const std::filesystem::path&)
{
    return nullptr;
}

std::error_code nameFile(std::FILE*, const std::filesystem::path&)
{
    return std::make_error_code(std::errc::not_supported);
}

std::error_code takeAttributes(std::FILE*, const std::filesystem::path&, std::filesystem::perms)
{
    return {};
}

std::error_code writeToDisk(std::FILE* file)
{
    return _commit(_fileno(file)) == 0 ? std::error_code() : lastError();
}

/// Tries for two seconds: a reader or a virus scanner may have one of the files open for a moment.
std::error_code moveFile(const std::filesystem::path& from, const std::filesystem::path& to, bool replaces)
{
    constexpr int tries = 20;
    constexpr DWORD pause = 100; // milliseconds
    for (int left = tries;; --left) {
        if (MoveFileExW(from.c_str(), to.c_str(),
                        MOVEFILE_WRITE_THROUGH | (replaces ? MOVEFILE_REPLACE_EXISTING : 0)) != 0)
            return {};
        const std::error_code failure = lastError();
        if (left == 0 || (failure.value() != ERROR_SHARING_VIOLATION && failure.value() != ERROR_ACCESS_DENIED))
            return failure;
        Sleep(pause);
    }
}

#include "files/system.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <atomic>
#include <system_error>

namespace
{

std::atomic<bool> interrupted = false;

/// In the words that other systems have for it, where they have any.
std::string lastReason()
{
    return std::error_code(static_cast<int>(GetLastError()), std::system_category())
        .default_error_condition()
        .message();
}

} // namespace

/// The C library never gives their numbers to files.
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

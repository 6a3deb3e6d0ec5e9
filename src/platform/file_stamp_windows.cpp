#include "capacity/file_stamp.h"

#include <windows.h>

#include <memory>

namespace
{

struct CloseFile
{
    using pointer = HANDLE;
    void operator()(HANDLE file) const { CloseHandle(file); }
};

std::wstring wide(const std::string& utf8)
{
    const int bytes = static_cast<int>(utf8.size());
    std::wstring text(utf8.size(), L'\0');
    text.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, text.data(), static_cast<int>(text.size()))));
    return text;
}

/// From Windows's steps of 100 ns since 1601.
std::int64_t nanosecondsOf(LARGE_INTEGER time)
{
    constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;
    return (time.QuadPart - secondsFrom1601To1970 * 10'000'000) * 100;
}

} // namespace

std::optional<FileStamp> stampOf(const std::string& path)
{
    const std::unique_ptr<HANDLE, CloseFile> file(CreateFileW(wide(path).c_str(), FILE_READ_ATTRIBUTES,
                                                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                                              nullptr, OPEN_EXISTING, 0, nullptr));
    if (file.get() == INVALID_HANDLE_VALUE)
        return std::nullopt;
    BY_HANDLE_FILE_INFORMATION about = {};
    FILE_BASIC_INFO times = {};
    if (GetFileInformationByHandle(file.get(), &about) == 0 ||
        GetFileInformationByHandleEx(file.get(), FileBasicInfo, &times, sizeof times) == 0)
        return std::nullopt;
    const auto joined = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
    return FileStamp{about.dwVolumeSerialNumber, joined(about.nFileIndexHigh, about.nFileIndexLow),
                     joined(about.nFileSizeHigh, about.nFileSizeLow), nanosecondsOf(times.LastWriteTime),
                     nanosecondsOf(times.ChangeTime)};
}

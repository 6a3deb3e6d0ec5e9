#include "files/replacement_file.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <cerrno>
#include <random>
#include <stdexcept>

namespace fs = std::filesystem;

namespace
{

[[noreturn]] void failFor(DWORD reason)
{
    throw std::runtime_error(
        std::error_code(static_cast<int>(reason), std::system_category()).default_error_condition().message());
}

std::string ownEnding()
{
    static std::random_device random;
    std::string ending;
    while (ending.size() < 6)
        ending += static_cast<char>('a' + random() % 26);
    return ending;
}

/// A reader or a virus scanner may have one of the files open for a moment.
bool move(const fs::path& from, const fs::path& to, DWORD how)
{
    constexpr int tries = 20;
    constexpr DWORD pause = 100; // milliseconds
    for (int left = tries;; --left) {
        if (MoveFileExW(from.c_str(), to.c_str(), how | MOVEFILE_WRITE_THROUGH) != 0)
            return true;
        const DWORD reason = GetLastError();
        if (left == 0 || (reason != ERROR_SHARING_VIOLATION && reason != ERROR_ACCESS_DENIED)) {
            SetLastError(reason);
            return false;
        }
        Sleep(pause);
    }
}

} // namespace

/// The directory's access list says who may do what; there is no umask.
mode_t ordinaryMode()
{
    return 0666;
}

ReplacementFile::ReplacementFile(const fs::path& file, mode_t)
{
    try {
        target = fs::weakly_canonical(fs::absolute(file)); // a link is followed
        const fs::file_status there = fs::status(target);
        if (fs::is_directory(there))
            throw std::runtime_error("Is a directory");
        if (fs::exists(there) && !fs::is_regular_file(there))
            throw std::runtime_error("not a regular file");
    } catch (const fs::filesystem_error& failure) {
        throw std::runtime_error(failure.code().message());
    }
    temporary = target;
    temporary += ".new-" + ownEnding();
    // Nobody else can open it.
    if (_wsopen_s(&descriptor, temporary.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY | _O_NOINHERIT, _SH_DENYRW,
                  _S_IREAD | _S_IWRITE) != 0) {
        descriptor = -1;
        temporary.clear();
        failFor(GetLastError());
    }
}

ReplacementFile::~ReplacementFile()
{
    close();
    if (!temporary.empty())
        DeleteFileW(temporary.c_str());
}

void ReplacementFile::close()
{
    if (descriptor >= 0)
        _close(descriptor);
    descriptor = -1;
}

/// A constructor that throws runs no destructor.
void ReplacementFile::fail()
{
    const DWORD reason = GetLastError();
    close();
    if (!temporary.empty())
        DeleteFileW(temporary.c_str());
    temporary.clear();
    failFor(reason);
}

void ReplacementFile::write(std::string_view bytes)
{
    constexpr std::size_t most = 1 << 20; // bytes at a time
    while (!bytes.empty()) {
        const int written = _write(descriptor, bytes.data(), static_cast<unsigned>(std::min(bytes.size(), most)));
        if (written <= 0)
            fail();
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void ReplacementFile::putInPlace()
{
    if (_commit(descriptor) != 0)
        fail();
    close(); // an open file cannot be moved
    if (!move(temporary, target, MOVEFILE_REPLACE_EXISTING))
        fail();
    temporary.clear();
}

void ReplacementFile::putInFreePlace()
{
    if (_commit(descriptor) != 0)
        fail();
    close();
    if (!move(temporary, target, 0)) {
        if (GetLastError() == ERROR_ALREADY_EXISTS || GetLastError() == ERROR_FILE_EXISTS)
            throw std::runtime_error("it exists already");
        fail();
    }
    temporary.clear();
}

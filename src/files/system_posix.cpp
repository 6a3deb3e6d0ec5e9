#include "files/system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace
{

constexpr const char* ownFiles = "/proc/self/fd/"; // by number

volatile std::sig_atomic_t interrupted = 0;

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// Renames a file in one step. Fails when there is a file of the new name.
bool moveToFree(const char* from, const char* to)
{
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return true;
    // Some file systems lack this way of renaming. Others lack hard links.
    return (errno == EINVAL || errno == ENOSYS) && link(from, to) == 0 && unlink(from) == 0;
}

} // namespace

void holdStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) < 0)
            // The file gets the lowest free number, which is this stream's.
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

void prepareConsole()
{
    struct sigaction interruption = {}; // no SA_RESTART: a write that waits for a full pipe ends
    interruption.sa_handler = [](int) { interrupted = 1; };
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        if (sigaction(number, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            sigaction(number, &interruption, nullptr);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

bool isInterrupted()
{
    return interrupted != 0;
}

std::string whyUnreadable(const std::filesystem::path& file)
{
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0)
        return std::strerror(errno);
    if (!S_ISREG(status.st_mode))
        return S_ISDIR(status.st_mode) ? std::strerror(EISDIR) : "not a regular file";
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return std::strerror(errno);
    close(descriptor);
    return "";
}

std::filesystem::perms ordinaryMode()
{
    const mode_t mask = umask(0); // it can only be read by setting it
    umask(mask);
    return std::filesystem::perms(0666 & ~mask);
}

std::FILE* openNewFile(const std::filesystem::path& file)
{
    const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    return descriptor < 0 ? nullptr : fdopen(descriptor, "w");
}

std::FILE* openNamelessFile(const std::filesystem::path& directory)
{
    if (access(ownFiles, X_OK) != 0)
        return nullptr;
    const int descriptor = open(directory.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600);
    return descriptor < 0 ? nullptr : fdopen(descriptor, "w");
}

std::error_code nameFile(std::FILE* file, const std::filesystem::path& name)
{
    const std::string own = ownFiles + std::to_string(fileno(file));
    return linkat(AT_FDCWD, own.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0 ? std::error_code()
                                                                                         : lastError();
}

std::error_code takeAttributes(std::FILE* file, const std::filesystem::path& other, std::filesystem::perms newMode)
{
    const int descriptor = fileno(file);
    struct stat old = {};
    struct stat own = {};
    if (stat(other.c_str(), &old) != 0)
        return errno == ENOENT && (fchmod(descriptor, static_cast<mode_t>(newMode)) == 0 || errno == ENOTSUP)
                   ? std::error_code() // some network drives have no modes
                   : lastError();
    if (fstat(descriptor, &own) != 0)
        return lastError();
    // Only root may change the owner. A user who shares the file by its group can keep the group.
    // The mode comes last, because a change of owner clears its special bits.
    if (own.st_uid != old.st_uid && fchown(descriptor, old.st_uid, old.st_gid) == 0)
        own.st_gid = old.st_gid;
    if (own.st_gid != old.st_gid && fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) != 0)
        return lastError();
    return fchmod(descriptor, old.st_mode & 07777) == 0 ? std::error_code() : lastError();
}

std::error_code writeToDisk(std::FILE* file)
{
    return fsync(fileno(file)) == 0 ? std::error_code() : lastError();
}

std::error_code moveFile(const std::filesystem::path& from, const std::filesystem::path& to, bool replaces)
{
    if (!(replaces ? std::rename(from.c_str(), to.c_str()) == 0 : moveToFree(from.c_str(), to.c_str())))
        return lastError();
    const int directory = open(to.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        return {}; // it cannot be read; the system writes the new name to the disk later
    fsync(directory);
    close(directory);
    return {};
}

#include "files/replacement_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace fs = std::filesystem;

namespace
{

[[noreturn]] void failFor(int reason)
{
    throw std::runtime_error(std::strerror(reason));
}

/// Where a link points to, through all links on the way, whether there is a file or not.
fs::path linkTarget(fs::path file)
{
    constexpr int mostLinks = 40; // as the system has it
    for (int links = 0; fs::is_symlink(fs::symlink_status(file)); ++links) {
        if (links == mostLinks)
            failFor(ELOOP);
        const fs::path target = fs::read_symlink(file);
        file = target.is_absolute() ? target : file.parent_path() / target;
    }
    return file;
}

/// Gives a file a name that no other file has yet, in one step.
bool renameToFree(const fs::path& from, const fs::path& to)
{
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    // Some file systems know no such renaming, others no second names.
    return (errno == EINVAL || errno == ENOSYS) && link(from.c_str(), to.c_str()) == 0 && unlink(from.c_str()) == 0;
}

} // namespace

mode_t ordinaryMode()
{
    const mode_t mask = umask(0); // it can only be read by setting it
    umask(mask);
    return 0666 & ~mask;
}

ReplacementFile::ReplacementFile(const fs::path& file, mode_t newMode)
{
    try {
        target = fs::absolute(linkTarget(file));
        const fs::file_status there = fs::status(target);
        if (fs::is_directory(there))
            failFor(EISDIR);
        if (fs::exists(there) && !fs::is_regular_file(there))
            throw std::runtime_error("not a regular file"); // a device or pipe would be replaced by one
    } catch (const fs::filesystem_error& failure) {
        failFor(failure.code().value());
    }
    std::string name = target.string() + ".new-XXXXXX";
    descriptor = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor < 0)
        fail();
    temporary = name;
    takeAttributes(newMode);
}

ReplacementFile::~ReplacementFile()
{
    close();
    if (!temporary.empty())
        unlink(temporary.c_str());
}

void ReplacementFile::close()
{
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

/// A constructor that throws runs no destructor.
void ReplacementFile::fail()
{
    const int reason = errno;
    close();
    if (!temporary.empty())
        unlink(temporary.c_str());
    temporary.clear();
    failFor(reason);
}

void ReplacementFile::takeAttributes(mode_t newMode)
{
    struct stat old = {};
    struct stat own = {};
    if (stat(target.c_str(), &old) != 0) {
        if (errno != ENOENT || fchmod(descriptor, newMode) != 0)
            fail();
        return;
    }
    if (fstat(descriptor, &own) != 0)
        fail();
    // Only root may give a file away; who shares a file by its group can keep that. After the owner comes the mode,
    // which a change of owner would clear of its special bits.
    if (own.st_uid != old.st_uid && fchown(descriptor, old.st_uid, old.st_gid) == 0)
        own.st_gid = old.st_gid;
    if (own.st_gid != old.st_gid && fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) != 0)
        fail();
    if (fchmod(descriptor, old.st_mode & 07777) != 0)
        fail();
}

void ReplacementFile::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            fail();
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void ReplacementFile::putInPlace()
{
    if (fsync(descriptor) != 0 || std::rename(temporary.c_str(), target.c_str()) != 0)
        fail();
    syncDirectory();
}

void ReplacementFile::putInFreePlace()
{
    if (fsync(descriptor) != 0)
        fail();
    if (!renameToFree(temporary, target)) {
        if (errno == EEXIST)
            throw std::runtime_error("it exists already");
        fail();
    }
    syncDirectory();
}

/// What is left to do when the file has its name.
void ReplacementFile::syncDirectory()
{
    temporary.clear();
    close();
    const int directory = open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        return; // one that may be written but not read; the name reaches the disk in the system's own time
    fsync(directory);
    ::close(directory);
}

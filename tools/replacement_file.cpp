#include "replacement_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace fs = std::filesystem;

namespace
{

constexpr const char* temporaryMark = ".new-"; // between the file's name and what makes it the run's own

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

/// Removes what runs that were killed have left beside the file. A run that lives holds a lock on its own.
void removeLeftovers(const fs::path& target)
{
    std::error_code ignored;
    const std::string beginning = target.filename().string() + temporaryMark;
    for (const fs::directory_entry& entry : fs::directory_iterator(target.parent_path(), ignored)) {
        if (!entry.path().filename().string().starts_with(beginning) || !entry.is_regular_file(ignored))
            continue;
        const int descriptor = open(entry.path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
        if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) == 0)
            fs::remove(entry.path(), ignored);
        if (descriptor >= 0)
            ::close(descriptor);
    }
}

} // namespace

ReplacementFile::ReplacementFile(const fs::path& file)
{
    try {
        target = fs::absolute(linkTarget(file));
    } catch (const fs::filesystem_error& failure) {
        failFor(failure.code().value());
    }
    if (fs::is_directory(target))
        failFor(EISDIR);
    if (fs::exists(target) && !fs::is_regular_file(target))
        throw std::runtime_error("not a regular file"); // a device or pipe would be replaced by one
    removeLeftovers(target);
    while (!create())
        ; // taken for a leftover by another run before it was locked
    takeAttributes();
}

/// Whether the temporary file is there and locked.
bool ReplacementFile::create()
{
    close();
    temporary = target.string() + temporaryMark + "XXXXXX";
    descriptor = mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0) {
        temporary.clear();
        fail();
    }
    struct stat own = {};
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0 && fstat(descriptor, &own) == 0 && own.st_nlink > 0;
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

void ReplacementFile::takeAttributes()
{
    struct stat old = {};
    struct stat own = {};
    constexpr mode_t forEverybody = 0644;
    if (stat(target.c_str(), &old) != 0) {
        if (errno != ENOENT || fchmod(descriptor, forEverybody) != 0)
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
    temporary.clear();
    close();
    const int directory = open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        return; // one that may be written but not read; the name reaches the disk in the system's own time
    fsync(directory);
    ::close(directory);
}

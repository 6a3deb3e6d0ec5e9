#include "files/replacement_file.h"

#include "files/system.h"

#include <cerrno>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>

namespace fs = std::filesystem;

namespace
{

void expectNone(std::error_code failure)
{
    if (failure)
        throw std::runtime_error(failure.default_error_condition().message());
}

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// The file that a link points to, through all links on the way. There need not be such a file.
fs::path linkTarget(fs::path file)
{
    constexpr int mostLinks = 40; // the limit of Linux
    for (int links = 0; fs::is_symlink(fs::symlink_status(file)); ++links) {
        if (links == mostLinks)
            expectNone(std::make_error_code(std::errc::too_many_symbolic_link_levels));
        const fs::path target = fs::read_symlink(file);
        file = target.is_absolute() ? target : file.parent_path() / target;
    }
    return fs::absolute(file);
}

std::string randomEnding()
{
    std::random_device random;
    std::string ending;
    while (ending.size() < 6)
        ending += static_cast<char>('a' + random() % 26);
    return ending;
}

} // namespace

ReplacementFile::ReplacementFile(const fs::path& place, fs::perms newMode)
{
    try {
        target = linkTarget(place);
        const fs::file_status there = fs::status(target);
        if (fs::is_directory(there))
            expectNone(std::make_error_code(std::errc::is_a_directory));
        if (fs::exists(there) && !fs::is_regular_file(there))
            throw std::runtime_error("not a regular file"); // it would become one
    } catch (const fs::filesystem_error& failure) {
        expectNone(failure.code());
    }
    if (std::error_code failure; !fs::exists(freeName(), failure) && failure == std::errc::filename_too_long)
        expectNone(failure); // now, and not when all is written
    file = openNamelessFile(target.parent_path());
    if (file == nullptr) {
        fs::path free;
        do
            free = freeName();
        while ((file = openNewFile(free)) == nullptr && errno == EEXIST);
        if (file == nullptr)
            expectNone(lastError());
        temporary = free;
    }
    if (const std::error_code failure = takeAttributes(file, target, newMode)) {
        discard(); // a constructor that throws runs no destructor
        expectNone(failure);
    }
}

ReplacementFile::~ReplacementFile()
{
    discard();
}

void ReplacementFile::discard()
{
    if (file != nullptr)
        std::fclose(std::exchange(file, nullptr));
    std::error_code stays;
    if (!temporary.empty())
        fs::remove(std::exchange(temporary, {}), stays);
}

/// A name beside the target that probably no file has.
fs::path ReplacementFile::freeName() const
{
    return fs::path(target) += ".new-" + randomEnding();
}

void ReplacementFile::write(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size())
        expectNone(lastError());
}

/// Brings everything to the disk and closes the file: Windows cannot move an open one.
void ReplacementFile::finish()
{
    if (std::fflush(file) != 0)
        expectNone(lastError());
    expectNone(writeToDisk(file));
    while (temporary.empty()) {
        const fs::path free = freeName();
        if (const std::error_code failure = nameFile(file, free); !failure)
            temporary = free;
        else if (failure != std::errc::file_exists)
            expectNone(failure);
    }
    if (std::fclose(std::exchange(file, nullptr)) != 0)
        expectNone(lastError());
}

void ReplacementFile::putInPlace()
{
    finish();
    expectNone(moveFile(temporary, target, true));
    temporary.clear();
}

void ReplacementFile::putInFreePlace()
{
    finish();
    const std::error_code failure = moveFile(temporary, target, false);
    if (failure == std::errc::file_exists)
        throw std::runtime_error("it exists already");
    expectNone(failure);
    temporary.clear();
}

#pragma once

#include "base/path_text.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

// Calls of the operating system, in system_posix.cpp and system_windows.cpp.

/// Replaces each closed standard stream by one that cannot be read or written. Otherwise the next
/// file that is opened would become that stream. Call it before any file is opened.
void holdStandardStreams();

/// From now on Ctrl+C and the like do not end the program: `isInterrupted` reports them. Writing to
/// a closed pipe is a failure and does not end the program. The standard streams take bytes as they
/// are. Signals that are ignored already (nohup does this) stay ignored.
void prepareConsole();

/// Whether there was an interruption since then.
bool isInterrupted();

/// Why a file cannot be read; "" when it can.
std::string whyUnreadable(const std::filesystem::path& file);

/// The mode of an ordinary new file of this user: reading and writing for all, less the umask.
std::filesystem::perms ordinaryMode();

/// Opens a new file that only this user can read and write. nullptr and errno for a failure; EEXIST
/// when there is a file of this name.
std::FILE* openNewFile(const std::filesystem::path& file);

/// Opens a new file in a directory that has no name yet, and so goes with the process however that ends. nullptr where
/// the file system or the operating system has no such files.
std::FILE* openNamelessFile(const std::filesystem::path& directory);

/// Gives that file a name in its directory; EEXIST when there is a file of this name.
std::error_code nameFile(std::FILE* file, const std::filesystem::path& name);

/// Gives an open file the mode, owner and group of `other`, or `newMode` when there is no `other`.
std::error_code takeAttributes(std::FILE* file, const std::filesystem::path& other, std::filesystem::perms newMode);

/// Waits until everything that was written is on the disk.
std::error_code writeToDisk(std::FILE* file);

/// Renames a closed file within its directory, in one step and so that it lasts. When there is a
/// file of the new name, it is replaced; without `replaces` it stays, and that is a failure.
std::error_code moveFile(const std::filesystem::path& from, const std::filesystem::path& to, bool replaces);

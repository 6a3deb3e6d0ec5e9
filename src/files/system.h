#pragma once

#include "base/path_text.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

// What the tools ask of the operating system; one of system_posix.cpp and system_windows.cpp answers.

/// Gives every closed standard stream a stand-in that takes and gives nothing, with the reason of a closed one. Else
/// the next file that is opened would be that stream. Call it before any file is opened.
void holdStandardStreams();

/// Notes Ctrl+C and the like from now on instead of ending the program, makes a closed pipe a failed write, and lets
/// the standard streams take bytes as they are. Signals that are ignored already (nohup does this) stay ignored.
void prepareConsole();

/// Whether there was an interruption since.
bool isInterrupted();

/// Why the operating system does not let a file be read; "" when it does.
std::string whyUnreadable(const std::filesystem::path& file);

/// The mode of an ordinary new file of this user: what the umask leaves of reading and writing for all.
std::filesystem::perms ordinaryMode();

/// A new file that is open for writing, for this user alone; nullptr and errno when there is none, EEXIST when the name
/// is taken.
std::FILE* openNewFile(const std::filesystem::path& file);

/// Gives an open file mode, owner and group of `other`, or `newMode` when there is no such file.
std::error_code takeAttributes(std::FILE* file, const std::filesystem::path& other, std::filesystem::perms newMode);

/// What the system holds of a file is on the disk afterwards.
std::error_code writeToDisk(std::FILE* file);

/// Gives a closed file another name in its directory, in one step and for good. A file of that name is replaced or, if
/// not `replaces`, stays and is a failure.
std::error_code moveFile(const std::filesystem::path& from, const std::filesystem::path& to, bool replaces);

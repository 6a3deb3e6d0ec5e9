#pragma once

#include "base/path_text.h"

#include <filesystem>
#include <string>

// What the tools ask of the operating system; one of system_posix.cpp and system_windows.cpp answers.

/// Gives every closed standard stream a stand-in that takes and gives nothing, with the reason of a closed one. Else
/// the next file that is opened would be that stream. Call it before any file is opened.
void holdStandardStreams();

/// Notes Ctrl+C and the like from now on instead of ending the program, makes a closed pipe a failed write, and lets
/// the standard streams take bytes as they are. What is ignored, as under nohup, stays so.
void prepareConsole();

/// Whether there was an interruption since.
bool isInterrupted();

/// Why the operating system does not let a file be read; "" when it does.
std::string whyUnreadable(const std::filesystem::path& file);

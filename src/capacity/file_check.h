#pragma once

#include <string>
#include <vector>

struct sqlite3;

/// What a data file that is whole holds.
struct FileContents
{
    std::vector<std::string> plain;    ///< tables that can be read without running anything
    std::vector<std::string> notPlain; ///< views, virtual tables, tables with generated columns: never read
};

/// Why SQLite failed on an open data file, to follow the file's name.
std::string whyFailed(sqlite3* file);

/// Checks an open data file by SQLite's own means and against the checksum that `writeChecksum` has left in it; a file
/// without one is checked by SQLite's means alone. Throws SilentFailure when the file is not whole, with the reason,
/// which follows the file's name.
FileContents checkFile(sqlite3* file);

/// Writes the checksum of all tables into an open data file. Throws SilentFailure when that fails.
void writeChecksum(sqlite3* file);

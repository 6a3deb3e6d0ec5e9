#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <utility>

// Handles of SQLite that close themselves.

struct SqliteCloser
{
    void operator()(sqlite3* file) const { sqlite3_close(file); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SqliteFile = std::unique_ptr<sqlite3, SqliteCloser>;
using SqliteStatement = std::unique_ptr<sqlite3_stmt, SqliteCloser>;

/// A new database in memory, for one thread alone; nullptr when there is no memory for it.
inline SqliteFile openInMemory()
{
    sqlite3* file = nullptr;
    const int result = sqlite3_open_v2(":memory:", &file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    SqliteFile opened(file);
    return result == SQLITE_OK ? std::move(opened) : nullptr;
}

/// A statement that can be run; nullptr when it cannot, and SQLite has the reason.
inline SqliteStatement prepareSql(sqlite3* file, const std::string& sql)
{
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(file, sql.c_str(), -1, &statement, nullptr);
    return SqliteStatement(statement);
}

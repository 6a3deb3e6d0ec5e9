#include "capacity/file_check.h"

#include "base/failure.h"
#include "base/sqlite.h"
#include "base/text.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <span>
#include <string_view>

namespace
{

// A file that says of itself that it has a checksum must have it: its loss is damage, too.
constexpr int idOfCheckedFiles = 0x50414444; // application_id; "PADD"
constexpr std::string_view checksumTable = "Checksum";

constexpr int mostEntries = 200; // of the schema; a right file has less than twenty

/// Hands every row of `sql` to `onRow`.
void forEachRow(sqlite3* file, const std::string& sql, const std::function<void(sqlite3_stmt*)>& onRow)
{
    const SqliteStatement statement = prepareSql(file, sql);
    if (!statement)
        throw SilentFailure(whyFailed(file));
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement.get())) == SQLITE_ROW)
        onRow(statement.get());
    if (result != SQLITE_DONE)
        throw SilentFailure(whyFailed(file));
}

std::string textOf(sqlite3_stmt* row, int column)
{
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    return text == nullptr ? std::string() : text;
}

std::string firstText(sqlite3* file, const std::string& sql)
{
    std::string text;
    forEachRow(file, sql, [&](sqlite3_stmt* row) { text = text.empty() ? textOf(row, 0) : text; });
    return text;
}

/// FNV-1a in 64 bits: not against a forger, but no accident gets past it.
class Hash
{
public:
    void add(std::span<const unsigned char> bytes)
    {
        for (const unsigned char byte : bytes)
            value_ = (value_ ^ byte) * 0x100000001B3;
    }

    /// Byte by byte from the lowest, whatever the machine's own order.
    void add(std::uint64_t number)
    {
        for (int shift = 0; shift < 64; shift += 8)
            value_ = (value_ ^ ((number >> shift) & 0xFF)) * 0x100000001B3;
    }

    /// A value of a row, with its type and length, so that neighbours cannot trade bytes.
    void add(sqlite3_stmt* row, int column)
    {
        const int type = sqlite3_column_type(row, column);
        if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) {
            add(SQLITE_FLOAT);
            add(std::bit_cast<std::uint64_t>(sqlite3_column_double(row, column)));
            return;
        }
        const auto* const bytes = static_cast<const unsigned char*>(sqlite3_column_blob(row, column));
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(row, column));
        add(static_cast<std::uint64_t>(type));
        add(std::uint64_t{size});
        if (bytes != nullptr)
            add(std::span(bytes, size));
    }

    std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0xCBF29CE484222325;
};

bool hasGeneratedColumn(sqlite3* file, const std::string& table)
{
    constexpr int hidden = 6; // column of the answer
    bool generated = false;
    forEachRow(file, "PRAGMA table_xinfo(" + inDoubledQuotes(table) + ")",
               [&](sqlite3_stmt* row) { generated |= sqlite3_column_int(row, hidden) != 0; });
    return generated;
}

/// The tables and views. SQLite opens no file whose schema calls a view a table, so that the schema can be asked which
/// they are. SQLite's own list works out the columns of every view, which may take any time and memory.
FileContents listTables(sqlite3* file)
{
    FileContents contents;
    int entries = 0;
    forEachRow(file, "SELECT type, name, sql FROM sqlite_schema ORDER BY name", [&](sqlite3_stmt* row) {
        if (++entries > mostEntries)
            throw SilentFailure("has too many tables and indexes");
        const std::string type = textOf(row, 0);
        const std::string name = textOf(row, 1);
        if (equalsInAnyCase(type, "index") || equalsInAnyCase(type, "trigger") ||
            equalsInAnyCase(name.substr(0, 7), "sqlite_"))
            return;
        for (const auto* const names : {&contents.plain, &contents.notPlain})
            if (std::ranges::any_of(*names, [&](const std::string& other) { return equalsInAnyCase(other, name); }))
                throw SilentFailure("is damaged: it has two tables " + name);
        const bool stored = textOf(row, 2).starts_with("CREATE TABLE ") && name.find('"') == std::string::npos;
        (stored ? contents.plain : contents.notPlain).push_back(name);
    });
    std::erase_if(contents.plain, [&](const std::string& name) {
        const bool generated = hasGeneratedColumn(file, name);
        if (generated)
            contents.notPlain.push_back(name);
        return generated;
    });
    return contents;
}

/// An index on an expression or on a part of a table would be worked out anew by SQLite's check.
void refuseComputedIndexes(sqlite3* file)
{
    const std::string computed = firstText(
        file, "SELECT 1 FROM sqlite_schema AS t, pragma_index_list(t.name) AS i, pragma_index_xinfo(i.name) AS c "
              "WHERE i.partial OR c.cid = -2 LIMIT 1");
    if (!computed.empty())
        throw SilentFailure("has an index that is computed");
}

std::uint64_t checksumOf(sqlite3* file, const std::vector<std::string>& tables)
{
    Hash hash;
    const auto addRow = [&](sqlite3_stmt* row) {
        for (int column = 0; column < sqlite3_column_count(row); ++column)
            hash.add(row, column);
    };
    forEachRow(file, "SELECT type, name, sql FROM sqlite_schema WHERE tbl_name <> 'Checksum' ORDER BY type, name",
               addRow);
    for (const std::string& table : tables)
        if (table != checksumTable)
            forEachRow(file, "SELECT * FROM " + inDoubledQuotes(table) + " NOT INDEXED", addRow);
    return hash.value();
}

std::string asText(std::uint64_t checksum)
{
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(checksum));
    return text;
}

} // namespace

std::string whyFailed(sqlite3* file)
{
    if (sqlite3_errcode(file) == SQLITE_INTERRUPT)
        return "takes too much time or memory to read";
    return std::string("is damaged: ") + sqlite3_errmsg(file);
}

FileContents checkFile(sqlite3* file)
{
    sqlite3_drop_modules(file, nullptr); // newer SQLite's check would run virtual tables, which may read views
    FileContents contents = listTables(file);
    refuseComputedIndexes(file);
    if (firstText(file, "PRAGMA integrity_check(1)") != "ok")
        throw SilentFailure("is damaged");
    const bool hasTable = std::ranges::find(contents.plain, checksumTable) != contents.plain.end();
    const bool hasId = firstText(file, "PRAGMA application_id") == std::to_string(idOfCheckedFiles);
    if ((hasId && !hasTable) || (hasTable && firstText(file, "SELECT value FROM Checksum NOT INDEXED") !=
                                                 asText(checksumOf(file, contents.plain))))
        throw SilentFailure("is damaged: it is not as it was built");
    return contents;
}

void writeChecksum(sqlite3* file)
{
    const std::string sql = "CREATE TABLE Checksum (value TEXT); INSERT INTO Checksum VALUES ('" +
                            asText(checksumOf(file, listTables(file).plain)) +
                            "'); PRAGMA application_id = " + std::to_string(idOfCheckedFiles);
    if (sqlite3_exec(file, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw SilentFailure(whyFailed(file));
}

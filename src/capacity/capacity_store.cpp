#include "capacity/capacity_store.h"

#include "base/failure.h"
#include "base/number_text.h"
#include "base/path_text.h"
#include "base/text.h"
#include "capacity/data_file.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr int largestValue = 1 << 16;          // bytes of a text or a row
constexpr std::int64_t mostMemory = 256 << 20; // bytes in SQLite's hands
constexpr int stepsBetweenLooks = 1000;        // of SQLite's machine, between two looks at the clock
constexpr std::size_t writeVersionAt = 18;     // in the header of the file; 2 there means WAL mode

/// What SQLite advises for a file that somebody else may have made: nothing in it is run. No temporary file is made,
/// and with room for all its pages each is brought into SQLite's hands once, not once a lookup.
void prepare(sqlite3* file)
{
    for (const auto& [option, on] : {std::pair{SQLITE_DBCONFIG_DEFENSIVE, 1},
                                     {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                     {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                                     {SQLITE_DBCONFIG_ENABLE_VIEW, 0}})
        sqlite3_db_config(file, option, on, nullptr);
    for (const auto& [limit, most] : {std::pair{SQLITE_LIMIT_LENGTH, largestValue},
                                      {SQLITE_LIMIT_SQL_LENGTH, 10'000},
                                      {SQLITE_LIMIT_VDBE_OP, 100'000},
                                      {SQLITE_LIMIT_EXPR_DEPTH, 100},
                                      {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 50},
                                      {SQLITE_LIMIT_ATTACHED, 0}})
        sqlite3_limit(file, limit, most);
    const std::string settings = "PRAGMA temp_store = MEMORY; PRAGMA cell_size_check = ON; "
                                 "PRAGMA ignore_check_constraints = ON; PRAGMA cache_size = -" +
                                 std::to_string(2 * largestDataFile / 1024);
    sqlite3_exec(file, settings.c_str(), nullptr, nullptr, nullptr);
}

int isTooMuch(void* click)
{
    const bool isLate = CapacityClick::Clock::now() > static_cast<CapacityClick*>(click)->deadline;
    return isLate || sqlite3_memory_used() > mostMemory ? 1 : 0;
}

double literalValue(const std::string& literal, const NumberText& users)
{
    const auto stored = storedNumbers().parse(literal);
    const auto value = stored ? stored : users.parse(literal);
    if (!value)
        throw SilentFailure("unreadable Cv in the query: " + literal);
    return *value;
}

} // namespace

void CapacityStore::beginClick()
{
    isRead_ = isKept_ && open_ != nullptr;
    click_ = {};
}

bool CapacityStore::isReplaced() const
{
    try {
        return readDataFile(pathOf(file_), bytes_).has_value();
    } catch (const SilentFailure&) {
        return true;
    }
}

std::string CapacityStore::whyUnreadable() const
{
    return click_.unreadable.empty() ? "" : textOf(pathOf(file_).filename()) + ' ' + click_.unreadable;
}

std::string CapacityStore::trouble() const
{
    const bool isWhole = click_.unreadable.empty();
    return !isWhole || click_.missing.empty() ? whyUnreadable()
                                              : textOf(pathOf(file_).filename()) + " has " + click_.missing;
}

/// Reads and checks the file, unless this click has done so.
void CapacityStore::read()
{
    if (isRead_)
        return;
    isRead_ = true;
    try {
        if (auto now = readDataFile(pathOf(file_), bytes_)) {
            open_.reset();
            bytes_ = std::move(*now);
        }
        if (!open_)
            openBytes();
    } catch (const SilentFailure& failure) {
        open_.reset();
        click_.unreadable = failure.what();
    }
}

void CapacityStore::openBytes()
{
    if (bytes_.size() > writeVersionAt && bytes_[writeVersionAt] == 2)
        throw SilentFailure("is in WAL mode, in which other files belong to it");
    const TimeTaken time(click_);
    SqliteFile file = openInMemory();
    auto* const bytes = reinterpret_cast<unsigned char*>(bytes_.data());
    const auto size = static_cast<sqlite3_int64>(bytes_.size());
    if (!file || sqlite3_deserialize(file.get(), "main", bytes, size, size, SQLITE_DESERIALIZE_READONLY) != SQLITE_OK)
        throw SilentFailure("cannot be read: there is no memory for it");
    sqlite3_progress_handler(file.get(), stepsBetweenLooks, isTooMuch, &click_);
    prepare(file.get());
    contents_ = checkFile(file.get());
    open_ = std::move(file);
}

sqlite3* CapacityStore::open(const std::string& table)
{
    read();
    if (!click_.unreadable.empty())
        throw SilentFailure(whyUnreadable());
    click_.givesFigures = !equalsInAnyCase(table, "Label");
    const auto isWanted = [&](const std::string& name) { return equalsInAnyCase(name, table); };
    if (std::ranges::any_of(contents_.notPlain, isWanted)) {
        const std::string reason = "has no plain table " + table;
        if (click_.givesFigures)
            click_.unreadable = reason;
        throw SilentFailure(reason);
    }
    if (std::ranges::none_of(contents_.plain, isWanted)) // missing in a whole file: a failure of this lookup alone
        throw click_.misses("no table " + table);
    return open_.get();
}

CapacityRows CapacityStore::table(const std::string& name, const Columns& columns)
{
    std::string walked;
    for (const char* const column : columns)
        walked += (walked.empty() ? "" : ", ") + std::string(column);
    return {open(name), click_,
            "SELECT " + (walked.empty() ? "*" : walked) + " FROM " + inDoubledQuotes(name) + " INDEXED BY " +
                inDoubledQuotes(name + ".Index") + " ORDER BY Pressure, flow",
            columns};
}

CapacityRows CapacityStore::query(const std::string& text, const Columns& columns)
{
    static const std::string beforeTable = "FROM ";
    static const std::string beforeLiteral = " WHERE CV = ";
    const auto name = text.find(beforeTable) + beforeTable.size();
    sqlite3* const file = open(text.substr(name, text.find(' ', name) - name));
    const auto where = text.find(beforeLiteral);
    if (where == std::string::npos)
        return {file, click_, text, columns};
    // "7,5" would be two numbers to SQLite: the literal is read here and bound.
    const auto literal = where + beforeLiteral.size();
    const auto end = std::min(text.find(" ORDER BY", literal), text.size());
    return {file, click_, text.substr(0, literal) + "?1" + text.substr(end), columns,
            literalValue(text.substr(literal, end - literal), *numbers_)};
}

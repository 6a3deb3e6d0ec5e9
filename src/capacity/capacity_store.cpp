#include "capacity/capacity_store.h"

#include "base/failure.h"
#include "base/number_text.h"
#include "capacity/read_only_vfs.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto longestLookup = 2000ms;           // beyond it a file is hostile or broken
constexpr std::uint64_t largestFile = 256 << 20; // bytes: some thousand times the shipped one
constexpr int largestValue = 1 << 16;            // bytes of a text or a row
constexpr std::int64_t mostMemory = 512 << 20;   // bytes in SQLite's hands: the largest file and as much again
constexpr int stepsBetweenLooks = 1000;          // of SQLite's machine, between two looks at the clock

/// What SQLite advises for a file that somebody else may have made: nothing in it is run.
void distrust(sqlite3* file)
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
    sqlite3_exec(file, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr); // there is no other place to sort in
}

int isTooMuch(void* deadline)
{
    return Clock::now() > *static_cast<Clock::time_point*>(deadline) || sqlite3_memory_used() > mostMemory ? 1 : 0;
}

/// Waits a little for another program's lock while the click has time left for that.
int waitForLock(void* timeLeft, int)
{
    auto& left = *static_cast<std::chrono::milliseconds*>(timeLeft);
    if (left <= 0ms)
        return 0;
    const auto start = Clock::now();
    sqlite3_sleep(10);
    left -= std::max(1ms, std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start));
    return 1;
}

/// Numbers in the data file are always written with "."; these are for values stored as text.
const NumberText& storedNumbers()
{
    static const NumberText numbers;
    return numbers;
}

double literalValue(const std::string& literal, const NumberText& users)
{
    auto value = storedNumbers().parse(literal);
    if (!value)
        value = users.parse(literal);
    if (!value)
        throw SilentFailure("unreadable Cv in the query: " + literal);
    return *value;
}

int position(sqlite3_stmt* statement, const char* column)
{
    for (int at = 0; at < sqlite3_column_count(statement); ++at)
        if (sqlite3_stricmp(sqlite3_column_name(statement, at), column) == 0)
            return at;
    throw SilentFailure(std::string("no column ") + column);
}

} // namespace

void CapacityRows::Closer::operator()(sqlite3* file) const
{
    sqlite3_close(file);
}

void CapacityRows::Closer::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

/// What is missing in a whole file (SQLITE_ERROR: no such table, column or index) is a failure of this lookup alone.
void CapacityRows::fail() const
{
    if (sqlite3_errcode(file_.get()) != SQLITE_ERROR)
        *unreadable_ = true;
    throw SilentFailure(sqlite3_errmsg(file_.get()));
}

void CapacityRows::prepare(const std::string& sql, const Columns& columns)
{
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(file_.get(), sql.c_str(), -1, &statement, nullptr);
    statement_.reset(statement);
    if (result != SQLITE_OK || statement == nullptr)
        fail();
    for (const char* const column : columns)
        positions_.push_back(position(statement, column));
    current_.resize(columns.size());
    before_.resize(columns.size());
}

void CapacityRows::step()
{
    sqlite3_stmt* const statement = statement_.get();
    const int result = sqlite3_step(statement);
    atEnd_ = result == SQLITE_DONE;
    if (atEnd_)
        return;
    if (result != SQLITE_ROW)
        fail();
    for (std::size_t column = 0; column < positions_.size(); ++column)
        read(positions_[column], current_[column]);
}

void CapacityRows::read(int position, Cell& into) const
{
    // One locked call a value instead of two; unlocked reads are safe because no other thread knows this statement.
    sqlite3_value* const value = sqlite3_column_value(statement_.get(), position);
    into.type = sqlite3_value_type(value);
    if (into.type == SQLITE_TEXT) {
        const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        if (text == nullptr) { // no memory for it
            *unreadable_ = true;
            throw SilentFailure("no memory");
        }
        into.text = text;
    } else
        into.number = sqlite3_value_double(value);
}

void CapacityRows::next()
{
    if (atEnd_)
        throw SilentFailure("no current row");
    std::swap(before_, current_);
    hasBefore_ = true;
    step();
}

void CapacityRows::previous()
{
    if (atEnd_ || !hasBefore_)
        throw SilentFailure("no row before");
    std::swap(before_, current_);
    hasBefore_ = false;
}

CapacityRows::Cell CapacityRows::cellOf(const char* column) const
{
    if (atEnd_)
        throw SilentFailure("no current row");
    Cell value;
    read(position(statement_.get(), column), value);
    return value;
}

std::optional<double> CapacityRows::Cell::numberOrEmpty() const
{
    switch (type) {
        case SQLITE_NULL:
            return std::nullopt;
        case SQLITE_INTEGER:
        case SQLITE_FLOAT:
            return number;
        case SQLITE_TEXT:
            if (const auto value = storedNumbers().parse(text))
                return value;
            [[fallthrough]];
        default:
            throw TypeMismatch();
    }
}

double CapacityRows::Cell::numberNeeded() const
{
    const auto value = numberOrEmpty();
    if (!value)
        throw SilentFailure("empty value");
    return *value;
}

const CapacityRows::Cell& CapacityRows::cell(std::size_t column) const
{
    if (atEnd_)
        throw SilentFailure("no current row");
    return current_[column];
}

std::optional<double> CapacityRows::numberOrEmpty(std::size_t column) const
{
    return cell(column).numberOrEmpty();
}

double CapacityRows::number(std::size_t column) const
{
    return cell(column).numberNeeded();
}

double CapacityRows::number(const char* column) const
{
    return cellOf(column).numberNeeded();
}

std::string CapacityRows::text(const char* column) const
{
    const Cell value = cellOf(column);
    switch (value.type) {
        case SQLITE_TEXT:
            return value.text;
        case SQLITE_INTEGER:
        case SQLITE_FLOAT:
            return storedNumbers().general(value.number);
        case SQLITE_NULL:
            throw SilentFailure("empty value");
        default:
            throw TypeMismatch();
    }
}

void CapacityStore::beginClick()
{
    unreadable_ = false;
    stampOfClick_.reset();
    checksumOfClick_.reset();
    lockWaitLeft_ = lockWait;
}

bool CapacityStore::hasReadOneFile() const
{
    // A file may change between a look at its stamp and the reading. Then its stamp is another one now.
    return !unreadable_ && (!stampOfClick_ || stampOf(file_) == stampOfClick_);
}

CapacityRows CapacityStore::open(const std::string& table)
{
    if (unreadable_)
        throw SilentFailure("the data file could not be read earlier in this click");
    unreadable_ = true; // until it has been
    CapacityRows rows(unreadable_);
    const std::optional<FileStamp> stamp = stampOf(file_);
    if (!stamp || stamp->size > largestFile)
        throw SilentFailure("no data file, or one that is too large");
    if (stampOfClick_.value_or(*stamp) != *stamp)
        throw SilentFailure("the data file has changed in this click");
    stampOfClick_ = stamp;
    sqlite3* file = nullptr;
    const int result = sqlite3_open_v2(file_.c_str(), &file, SQLITE_OPEN_READWRITE, readOnlyVfs());
    rows.file_.reset(file);
    if (result != SQLITE_OK)
        throw SilentFailure("cannot open " + file_);
    distrust(file);
    *rows.deadline_ = Clock::now() + longestLookup;
    sqlite3_progress_handler(file, stepsBetweenLooks, isTooMuch, rows.deadline_.get());
    sqlite3_busy_handler(file, waitForLock, &lockWaitLeft_);
    check(file, *stamp);
    const auto isWanted = [&](const std::string& name) { return sqlite3_stricmp(name.c_str(), table.c_str()) == 0; };
    if (std::ranges::any_of(contents_.notPlain, isWanted))
        throw SilentFailure(table + " is no plain table");
    unreadable_ = false;
    if (std::ranges::none_of(contents_.plain, isWanted))
        throw SilentFailure("no table " + table); // missing in a whole file: a failure of this lookup alone
    return rows;
}

void CapacityStore::check(sqlite3* file, const FileStamp& stamp)
{
    if (whole_ != stamp) {
        // In one transaction and with room for the whole file, what a lookup reads is what was checked here.
        const std::uint64_t pages = stamp.size / 512 + 4000; // more than there are
        const std::string sql = "BEGIN; PRAGMA cell_size_check = ON; PRAGMA ignore_check_constraints = ON; "
                                "PRAGMA cache_size = " +
                                std::to_string(pages);
        if (sqlite3_exec(file, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
            throw SilentFailure(sqlite3_errmsg(file));
        contents_ = checkFile(file);
        whole_.reset();
        if (stamp.isSettled())
            whole_ = stamp;
    }
    if (checksumOfClick_.value_or(contents_.checksum) != contents_.checksum)
        throw SilentFailure("another data file than earlier in this click");
    checksumOfClick_ = contents_.checksum;
}

CapacityRows CapacityStore::table(const std::string& name, const Columns& columns)
{
    CapacityRows rows = open(name);
    rows.prepare("SELECT * FROM " + sqlName(name) + " INDEXED BY " + sqlName(name + ".Index") +
                     " ORDER BY Pressure, flow",
                 columns);
    rows.step();
    return rows;
}

CapacityRows CapacityStore::query(const std::string& text, const Columns& columns)
{
    static const std::string beforeTable = "FROM ";
    static const std::string beforeLiteral = " WHERE CV = ";
    const auto name = text.find(beforeTable) + beforeTable.size();
    CapacityRows rows = open(text.substr(name, text.find(' ', name) - name));
    const auto where = text.find(beforeLiteral);
    if (where == std::string::npos) {
        rows.prepare(text, columns);
    } else {
        // "7,5" would be two numbers to SQLite: the literal is read here and bound.
        const auto literal = where + beforeLiteral.size();
        const auto end = std::min(text.find(" ORDER BY", literal), text.size());
        rows.prepare(text.substr(0, literal) + "?1" + text.substr(end), columns);
        sqlite3_bind_double(rows.statement_.get(), 1, literalValue(text.substr(literal, end - literal), *numbers_));
    }
    rows.step();
    return rows;
}

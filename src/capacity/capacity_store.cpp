#include "capacity/capacity_store.h"

#include "base/failure.h"
#include "base/number_text.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace
{

constexpr int lockedFileWaitMs = 200; // another program may hold the file for a moment

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

std::string quoted(const std::string& name)
{
    std::string text = "\"";
    for (const char c : name)
        text += c == '"' ? std::string("\"\"") : std::string(1, c);
    return text + '"';
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

void CapacityRows::prepare(const std::string& sql, const Columns& columns)
{
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(file_.get(), sql.c_str(), -1, &statement, nullptr);
    statement_.reset(statement);
    if (result != SQLITE_OK || statement == nullptr)
        throw SilentFailure(sqlite3_errmsg(file_.get()));
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
        throw SilentFailure(sqlite3_errmsg(file_.get()));
    for (std::size_t column = 0; column < positions_.size(); ++column)
        read(positions_[column], current_[column]);
}

void CapacityRows::read(int position, Cell& into) const
{
    // One locked call a value instead of two; unlocked reads are safe because no other thread knows this statement.
    sqlite3_value* const value = sqlite3_column_value(statement_.get(), position);
    into.type = sqlite3_value_type(value);
    if (into.type == SQLITE_TEXT)
        into.text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    else
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

CapacityRows CapacityStore::open() const
{
    CapacityRows rows;
    sqlite3* file = nullptr;
    const int result = sqlite3_open_v2(file_.c_str(), &file, SQLITE_OPEN_READWRITE, nullptr);
    rows.file_.reset(file);
    if (result != SQLITE_OK)
        throw SilentFailure("cannot open " + file_);
    sqlite3_busy_timeout(file, lockedFileWaitMs);
    return rows;
}

CapacityRows CapacityStore::table(const std::string& name, const Columns& columns) const
{
    CapacityRows rows = open();
    rows.prepare("SELECT * FROM " + quoted(name) + " INDEXED BY " + quoted(name + ".Index") +
                     " ORDER BY Pressure, flow",
                 columns);
    rows.step();
    return rows;
}

CapacityRows CapacityStore::query(const std::string& text, const Columns& columns) const
{
    static const std::string beforeLiteral = " WHERE CV = ";
    CapacityRows rows = open();
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

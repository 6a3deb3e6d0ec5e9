#include "capacity/capacity_rows.h"

#include "base/failure.h"
#include "base/number_text.h"
#include "base/text.h"
#include "capacity/file_check.h"

#include <utility>

namespace
{

int position(sqlite3_stmt* statement, const char* column)
{
    for (int at = 0; at < sqlite3_column_count(statement); ++at)
        if (equalsInAnyCase(sqlite3_column_name(statement, at), column))
            return at;
    return -1;
}

} // namespace

const NumberText& storedNumbers()
{
    static const NumberText numbers;
    return numbers;
}

CapacityRows::CapacityRows(sqlite3* file, CapacityClick& click, const std::string& sql, const Columns& columns,
                           std::optional<double> parameter)
    : time_(click), statement_(prepareSql(file, sql)), sql_(sql), current_(columns.size()), before_(columns.size())
{
    if (!statement_)
        fail(file);
    if (parameter)
        sqlite3_bind_double(statement_.get(), 1, *parameter);
    for (const char* const column : columns)
        if (positions_.push_back(position(statement_.get(), column)); positions_.back() < 0)
            throw click.misses(std::string("no column ") + column);
    step();
}

/// What is missing in a whole file (SQLITE_ERROR: no such table, column or index) is a failure of this lookup alone.
void CapacityRows::fail(sqlite3* file) const
{
    if (sqlite3_errcode(file) == SQLITE_ERROR)
        throw time_.click.misses(sqlite3_errmsg(file));
    time_.click.unreadable = whyFailed(file);
    throw SilentFailure(sqlite3_errmsg(file));
}

void CapacityRows::step()
{
    sqlite3_stmt* const statement = statement_.get();
    const int result = sqlite3_step(statement);
    atEnd_ = result == SQLITE_DONE;
    if (atEnd_)
        return;
    if (result != SQLITE_ROW)
        fail(sqlite3_db_handle(statement));
    for (std::size_t column = 0; column < positions_.size(); ++column)
        read(positions_[column], current_[column]);
}

void CapacityRows::read(int position, Cell& into) const
{
    // One call a value. It may be read unprotected, for no other thread uses this connection.
    sqlite3_value* const value = sqlite3_column_value(statement_.get(), position);
    into.type = sqlite3_value_type(value);
    if (into.type == SQLITE_TEXT) {
        const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        if (text == nullptr) // no memory for it
            fail(sqlite3_db_handle(statement_.get()));
        into.text = text;
    } else
        into.value = sqlite3_value_double(value);
}

void CapacityRows::expectRow() const
{
    if (atEnd_)
        throw SilentFailure("no current row");
}

void CapacityRows::next()
{
    expectRow();
    std::swap(before_, current_);
    hasBefore_ = true;
    ++walked_;
    step();
}

void CapacityRows::previous()
{
    if (atEnd_ || !hasBefore_)
        throw SilentFailure("no row before");
    std::swap(before_, current_);
    hasBefore_ = false;
    time_.end();
}

CapacityRows::Cell CapacityRows::cellOf(const char* column) const
{
    expectRow();
    Cell value;
    if (const int at = position(statement_.get(), column); at >= 0) {
        read(at, value);
        return value;
    }
    // The walk reads the index alone, which takes half the time. The rest of this row is in the table.
    const CapacityRows row(sqlite3_db_handle(statement_.get()), time_.click,
                           "SELECT " + std::string(column) + sql_.substr(sql_.find(" FROM ")) + " LIMIT 1 OFFSET " +
                               std::to_string(walked_),
                           {column});
    return row.cell(0);
}

std::optional<double> CapacityRows::Cell::numberOrEmpty() const
{
    if (type == SQLITE_NULL)
        return std::nullopt;
    if (type == SQLITE_INTEGER || type == SQLITE_FLOAT)
        return value;
    const auto read = type == SQLITE_TEXT ? storedNumbers().parse(text) : std::nullopt;
    if (!read)
        throw TypeMismatch();
    return read;
}

double CapacityRows::Cell::number() const
{
    const auto number = numberOrEmpty();
    if (!number)
        throw SilentFailure("empty value");
    return *number;
}

std::string CapacityRows::Cell::asText() const
{
    return type == SQLITE_TEXT ? text : storedNumbers().general(number());
}

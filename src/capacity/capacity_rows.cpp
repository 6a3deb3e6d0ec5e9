#include "capacity/capacity_rows.h"

#include "base/failure.h"
#include "base/number_text.h"

#include <sqlite3.h>

#include <utility>

namespace
{

int position(sqlite3_stmt* statement, const char* column)
{
    for (int at = 0; at < sqlite3_column_count(statement); ++at)
        if (sqlite3_stricmp(sqlite3_column_name(statement, at), column) == 0)
            return at;
    throw SilentFailure(std::string("no column ") + column);
}

} // namespace

const NumberText& storedNumbers()
{
    static const NumberText numbers;
    return numbers;
}

CapacityRows::Spent::Spent(CapacityClick& ofClick) : click(ofClick)
{
    click.deadline = start + click.timeLeft;
}

CapacityRows::Spent::~Spent()
{
    click.timeLeft -= CapacityClick::Clock::now() - start;
}

void CapacityRows::Closer::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

CapacityRows::CapacityRows(sqlite3* file, CapacityClick& click, const std::string& sql, const Columns& columns,
                           double parameter)
    : spent_(std::make_unique<Spent>(click)), current_(columns.size()), before_(columns.size())
{
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(file, sql.c_str(), -1, &statement, nullptr);
    statement_.reset(statement);
    if (result != SQLITE_OK || statement == nullptr)
        fail(file);
    if (sqlite3_bind_parameter_count(statement) > 0)
        sqlite3_bind_double(statement, 1, parameter);
    for (const char* const column : columns)
        positions_.push_back(position(statement, column));
    step();
}

/// What is missing in a whole file (SQLITE_ERROR: no such table, column or index) is a failure of this lookup alone.
void CapacityRows::fail(sqlite3* file) const
{
    const std::string reason = sqlite3_errmsg(file);
    if (sqlite3_errcode(file) == SQLITE_INTERRUPT)
        spent_->click.unreadable = "takes too long to read";
    else if (sqlite3_errcode(file) != SQLITE_ERROR)
        spent_->click.unreadable = "is damaged: " + reason;
    throw SilentFailure(reason);
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
    // One locked call a value instead of two; unlocked reads are safe because no other thread knows this statement.
    sqlite3_value* const value = sqlite3_column_value(statement_.get(), position);
    into.type = sqlite3_value_type(value);
    if (into.type == SQLITE_TEXT) {
        const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        if (text == nullptr) // no memory for it
            fail(sqlite3_db_handle(statement_.get()));
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

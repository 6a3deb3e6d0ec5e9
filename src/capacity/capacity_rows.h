#pragma once

#include "base/failure.h"
#include "base/sqlite.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// Names of the columns to walk by; case does not matter, as in SQL. A missing one is a silent failure.
using Columns = std::vector<const char*>;

/// What one click may spend on the data file, and why it cannot read it.
struct CapacityClick
{
    using Clock = std::chrono::steady_clock;

    Clock::duration timeLeft = std::chrono::seconds(2); ///< beyond it a file is hostile or broken
    Clock::time_point deadline;                         ///< of the walk under way
    std::string unreadable;                             ///< "": it can be read so far
    std::string missing;       ///< a table, column or index that a whole file does not have; "": none
    bool givesFigures = false; ///< the table under way: the label does not

    /// A failure of one lookup alone.
    SilentFailure misses(const std::string& what)
    {
        if (givesFigures)
            missing = what;
        return SilentFailure(what);
    }
};

/// As long as it lives, its time is taken from that of the click.
struct TimeTaken
{
    CapacityClick& click;
    bool isEnded = false;
    CapacityClick::Clock::time_point start = CapacityClick::Clock::now();

    explicit TimeTaken(CapacityClick& ofClick) : click(ofClick) { click.deadline = start + click.timeLeft; }
    TimeTaken(const TimeTaken&) = delete;
    ~TimeTaken() { end(); }

    /// What follows takes no more of it: a message may wait for the user.
    void end()
    {
        if (!isEnded)
            click.timeLeft -= CapacityClick::Clock::now() - start;
        isEnded = true;
    }
};

/// Rows of one table or query, walked one after the other. The columns named when the rows are opened are read in every
/// row and numbered in that order.
///
/// An empty value where one is needed and a read without a current row are silent failures; a value that cannot be read
/// as the number or text wanted is a type mismatch. A file that fails while it is walked, or takes too long, cannot be
/// read for the rest of the click. Rows must be gone before the next click begins and before the store goes.
class CapacityRows
{
public:
    CapacityRows(const CapacityRows&) = delete;

    /// True once the walk has passed the last row.
    bool atEnd() const { return atEnd_; }
    void next();

    /// Steps back to the row before; there is none before the first one. It ends the walk: only reads may follow.
    void previous();

    /// A value of the current row as a number; nullopt when it is empty.
    std::optional<double> numberOrEmpty(std::size_t column) const { return cell(column).numberOrEmpty(); }
    double number(std::size_t column) const { return cell(column).number(); }

    /// A value of any other column of the current row; not after a step back.
    double number(const char* column) const { return cellOf(column).number(); }
    std::string text(const char* column) const { return cellOf(column).asText(); }

private:
    friend class CapacityStore;

    struct Cell
    {
        int type = 0; ///< SQLite's type code
        double value = 0;
        std::string text;

        std::optional<double> numberOrEmpty() const;
        double number() const;
        std::string asText() const;
    };
    using Row = std::vector<Cell>;

    /// Begins the walk of a query of the file; `parameter` stands for its "?1".
    CapacityRows(sqlite3* file, CapacityClick& click, const std::string& sql, const Columns& columns,
                 std::optional<double> parameter = {});

    [[noreturn]] void fail(sqlite3* file) const;
    void step();
    void expectRow() const;
    void read(int position, Cell& into) const;
    const Cell& cell(std::size_t column) const
    {
        expectRow();
        return current_[column];
    }
    Cell cellOf(const char* column) const;

    TimeTaken time_;
    SqliteStatement statement_;
    std::string sql_;
    std::size_t walked_ = 0;     ///< rows
    std::vector<int> positions_; ///< of the walked columns in the statement's rows
    Row current_;
    Row before_; ///< the row walked over last
    bool atEnd_ = false;
    bool hasBefore_ = false;
};

/// Numbers in the data file are always written with "."; these are for values stored as text.
const class NumberText& storedNumbers();

#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

/// Names of the columns to walk by; case does not matter, as in SQL. A missing one is a silent failure.
using Columns = std::vector<const char*>;

/// What one click may spend on the data file, and why it cannot read it.
struct CapacityClick
{
    using Clock = std::chrono::steady_clock;

    Clock::duration timeLeft = std::chrono::seconds(2); ///< beyond it a file is hostile or broken
    Clock::time_point deadline;                         ///< of the walk under way
    std::string unreadable;                             ///< "": it can be read so far
};

/// As long as it lives, its time is taken from that of the click.
struct TimeTaken
{
    CapacityClick& click;
    bool isEnded = false;
    CapacityClick::Clock::time_point start = CapacityClick::Clock::now();

    explicit TimeTaken(CapacityClick& ofClick);
    TimeTaken(const TimeTaken&) = delete;
    ~TimeTaken();

    /// What follows takes no more of it: a message may wait for the user.
    void end();
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
    std::optional<double> numberOrEmpty(std::size_t column) const;
    double number(std::size_t column) const;

    /// A value of any other column of the current row; not after a step back.
    double number(const char* column) const;
    std::string text(const char* column) const;

private:
    friend class CapacityStore;

    struct Closer
    {
        void operator()(sqlite3_stmt* statement) const;
    };
    struct Cell
    {
        int type = 0; ///< SQLite's type code
        double number = 0;
        std::string text;

        std::optional<double> numberOrEmpty() const;
        double numberNeeded() const;
    };
    using Row = std::vector<Cell>;

    /// Begins the walk of a query of the file; `parameter` stands for its "?1".
    CapacityRows(sqlite3* file, CapacityClick& click, const std::string& sql, const Columns& columns,
                 std::optional<double> parameter = {});

    [[noreturn]] void fail(sqlite3* file) const;
    void step();
    void read(int position, Cell& into) const;
    const Cell& cell(std::size_t column) const;
    Cell cellOf(const char* column) const;

    TimeTaken time_;
    std::unique_ptr<sqlite3_stmt, Closer> statement_;
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

#pragma once

#include "capacity/file_check.h"
#include "capacity/file_stamp.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class NumberText;
struct sqlite3;
struct sqlite3_stmt;

/// Names of the columns to walk by; case does not matter, as in SQL. A missing one is a silent failure.
using Columns = std::vector<const char*>;

/// Rows of one table or query, walked one after the other. Holds the data file open for as long as it lives. The
/// columns named when the rows are opened are read in every row and numbered in that order.
///
/// Any failure of the file, an empty value where one is needed and a read without a current row are silent failures; a
/// value that cannot be read as the number or text wanted is a type mismatch. A file that fails while it is read cannot
/// be read for the rest of the click.
class CapacityRows
{
public:
    CapacityRows(CapacityRows&&) = default;

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
        void operator()(sqlite3* file) const;
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

    explicit CapacityRows(bool& unreadable) : unreadable_(&unreadable) {}
    [[noreturn]] void fail() const;
    void prepare(const std::string& sql, const Columns& columns);
    void step();
    void read(int position, Cell& into) const;
    const Cell& cell(std::size_t column) const;
    Cell cellOf(const char* column) const;

    using Deadline = std::chrono::steady_clock::time_point;

    bool* unreadable_;                                                  ///< of the store
    std::unique_ptr<Deadline> deadline_ = std::make_unique<Deadline>(); ///< known to the open file
    std::unique_ptr<sqlite3, Closer> file_;
    std::unique_ptr<sqlite3_stmt, Closer> statement_; ///< closed before the file
    std::vector<int> positions_;                      ///< of the walked columns in the statement's rows
    Row current_;
    Row before_; ///< the row walked over last
    bool atEnd_ = false;
    bool hasBefore_ = false;
};

/// The capacity data file `capacities.mdb`: an SQLite 3 file of valve capacity tables and large-tank breathing tables.
/// Every call opens the file afresh, shared and without ever creating it, and nothing is ever written
/// (capacity/read_only_vfs).
///
/// A file is whole or it is no file: after any change of it, it is checked before anything is read
/// (capacity/file_check). A file that is damaged, locked for two seconds of a click, or another one than earlier in the
/// click cannot be read for the rest of that click: no valve comes of half a file. Only plain tables are read.
class CapacityStore
{
public:
    /// `file` is a path in UTF-8. `numbers` reads the Cv literal of a query text in the user's number format.
    CapacityStore(std::string file, const NumberText& numbers) : file_(std::move(file)), numbers_(&numbers) {}
    CapacityStore(const CapacityStore&) = delete; // rows refer to it

    /// A new click begins: what could not be read in the one before may be read again.
    void beginClick();

    /// Whether everything that this click has read came from one whole file, which still is as it was.
    bool hasReadOneFile() const;

    /// The rows of a capacity table, from the first, in the order of its index "Index": Pressure, then flow. The index
    /// of table T is the SQLite index "T.Index"; without it the table cannot be walked.
    CapacityRows table(const std::string& name, const Columns& columns);

    /// The rows of a query text, from the first. The number after " WHERE CV = " may be written with "." or with the
    /// user's decimal separator.
    CapacityRows query(const std::string& text, const Columns& columns);

private:
    /// For another program's lock, in all of a click.
    static constexpr std::chrono::milliseconds lockWait{2000};

    CapacityRows open(const std::string& table);
    void check(sqlite3* file, const FileStamp& stamp);

    std::string file_;
    const NumberText* numbers_;

    std::optional<FileStamp> whole_;        ///< the settled state of the file that has passed the check
    FileContents contents_;                 ///< of the file that passed last
    std::optional<FileStamp> stampOfClick_; ///< when it began to read
    std::optional<std::uint64_t> checksumOfClick_;
    bool unreadable_ = false;                           ///< in this click
    std::chrono::milliseconds lockWaitLeft_ = lockWait; ///< of the click
};

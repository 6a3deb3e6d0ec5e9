#pragma once

#include "capacity/capacity_rows.h"
#include "capacity/file_check.h"

#include <string>
#include <utility>

class NumberText;

/// The capacity data file `capacities.mdb`: an SQLite 3 file of valve capacity tables and large-tank breathing tables.
///
/// A click reads it once, whole, into memory, and all lookups of the click walk these bytes: they come from one file,
/// whatever happens to it meanwhile. Nothing of the file stays open, and nothing is ever written. A change counts from
/// the next click. A file is whole or it is no file: new bytes are checked before anything is looked up
/// (capacity/file_check). A file that cannot be read gives every lookup of the click nothing. Only plain tables are
/// read.
class CapacityStore
{
public:
    /// `file` is a path in UTF-8. `numbers` reads the Cv literal of a query text in the user's number format.
    CapacityStore(std::string file, const NumberText& numbers) : file_(std::move(file)), numbers_(&numbers) {}
    CapacityStore(const CapacityStore&) = delete; // SQLite keeps pointers to the bytes and to the click

    /// A new click begins: its first lookup reads the file again.
    void beginClick();

    /// From now on no click reads the file again, once it has been read: a list is sized on one file.
    void keepFile() { isKept_ = true; }

    /// Whether the file is another one by now than the one that the lookups walk.
    bool isReplaced() const;

    /// Why this click cannot read the file: "capacities.mdb is missing"; "" when it can, or has not tried to.
    std::string whyUnreadable() const;

    /// The same, and where the file is whole, what a lookup of this click has missed in it: "capacities.mdb has no
    /// table USLargeTank". Such a lookup gives nothing or 0, as one that finds no row, and the valve may be too small.
    std::string trouble() const;

    /// The rows of a capacity table, from the first, in the order of its index "Index": Pressure, then flow. The index
    /// of table T is the SQLite index "T.Index"; without it the table cannot be walked.
    CapacityRows table(const std::string& name, const Columns& columns);

    /// The rows of a query text, from the first. The number after " WHERE CV = " may be written with "." or with the
    /// user's decimal separator.
    CapacityRows query(const std::string& text, const Columns& columns);

private:
    sqlite3* open(const std::string& table);
    void read();
    void openBytes();

    std::string file_;
    const NumberText* numbers_;
    bool isKept_ = false;

    CapacityClick click_;
    std::string bytes_;     ///< of the file, as they were read last
    SqliteFile open_;       ///< SQLite's view of these bytes, when they have passed the check
    FileContents contents_; ///< of them
    bool isRead_ = false;   ///< in this click
};

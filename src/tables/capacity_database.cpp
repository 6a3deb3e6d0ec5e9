#include "tables/capacity_database.h"

#include "base/failure.h"
#include "base/number_text.h"
#include "base/sqlite.h"
#include "capacity/capacity_store.h"
#include "capacity/file_check.h"
#include "files/system.h"
#include "tables/findings.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace
{

constexpr Rule cannotBeOpened{Severity::error, "the file cannot be read"};
constexpr Rule cannotBeRead{Severity::error, "the program cannot read it", "build the file anew"};
constexpr Rule storedWrong{Severity::error, "a value is stored wrongly", "build the file with build_capacities"};
constexpr Rule tableIsEmpty{Severity::error, "a table without rows", "build the file anew"};
constexpr Rule hasNoChecksum{Severity::warning, "the file has no checksum",
                             "--export it and build it anew, so that the program notices damaged figures"};

/// The reason of a failure that the program does not show to its user.
std::string reasonOf(const SilentFailure& failure)
{
    return std::strcmp(failure.what(), sqlite3_errstr(SQLITE_INTERRUPT)) == 0 ? "it takes longer than 2 s"
                                                                              : failure.what();
}

void require(bool success, const SqliteFile& connection)
{
    if (!success)
        throw std::runtime_error(sqlite3_errmsg(connection.get()));
}

void run(const SqliteFile& connection, const std::string& sql)
{
    require(sqlite3_exec(connection.get(), sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, connection);
}

void bind(sqlite3_stmt* statement, int parameter, double value)
{
    sqlite3_bind_double(statement, parameter, value);
}

void bind(sqlite3_stmt* statement, int parameter, const std::string& value)
{
    sqlite3_bind_text(statement, parameter, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
}

SqliteStatement prepare(const SqliteFile& connection, const std::string& sql)
{
    SqliteStatement statement = prepareSql(connection.get(), sql);
    require(statement != nullptr, connection);
    return statement;
}

/// Fills the table `name`, whose columns stand in the order of `columnsOf`.
template <typename Row>
void insertRows(const SqliteFile& connection, const std::string& name, const std::vector<Row>& rows)
{
    std::string sql = "INSERT INTO \"" + name + "\" VALUES (?";
    for (std::size_t i = 1; i < columnsOf<Row>().size(); ++i)
        sql += ", ?";
    const SqliteStatement statement = prepare(connection, sql + ")");
    sqlite3_stmt* const prepared = statement.get();
    for (const Row& row : rows) {
        int parameter = 0;
        for (const Column<Row>& column : columnsOf<Row>()) {
            ++parameter;
            std::visit([&](auto member) { bind(prepared, parameter, row.*member); }, column.member);
        }
        require(sqlite3_step(prepared) == SQLITE_DONE, connection);
        sqlite3_reset(prepared);
    }
}

void insertLabel(const SqliteFile& connection, const TablesLabel& label)
{
    run(connection, "CREATE TABLE Label (label TEXT, date TEXT)");
    const SqliteStatement statement = prepare(connection, "INSERT INTO Label VALUES (?, ?)");
    bind(statement.get(), 1, label.label);
    bind(statement.get(), 2, label.date);
    require(sqlite3_step(statement.get()) == SQLITE_DONE, connection);
}

/// Whether the program can read the file at all. Why it cannot, or a missing checksum, is reported.
bool isReadable(CapacityStore& store, const std::filesystem::path& file, Findings& findings)
{
    try {
        store.query("SELECT value FROM Checksum", {});
    } catch (const SilentFailure& failure) {
        const bool isReadable = store.whyUnreadable().empty();
        findings.report(isReadable ? hasNoChecksum : cannotBeRead, textOf(file), 0, reasonOf(failure));
        return isReadable;
    }
    return true;
}

/// Reads one table of a data file through the program's own store.
template <typename Row>
class StoredTable
{
public:
    StoredTable(CapacityStore& store, std::string name, const std::string& source, Findings& findings)
        : store_(store), name_(std::move(name)), findings_(findings)
    {
        table_.source = source;
        table_.isReadable = true;
    }

    /// Throws SilentFailure when the program cannot read it.
    Table<Row> read()
    {
        readRows();
        return std::move(table_);
    }

private:
    // Each value comes with its type, and whether it has a NUL, at which a text would end.
    static std::string nulColumn(const char* column) { return std::string("NUL in ") + column; }
    static std::string typeColumn(const char* column) { return std::string("type of ") + column; }

    void readRows()
    {
        std::string sql = "SELECT *";
        Columns walked;
        for (const Column<Row>& column : columnsOf<Row>()) {
            sql += std::string(", typeof(") + column.name + ") AS \"" + typeColumn(column.name) + "\", instr(" +
                   column.name + ", char(0)) AS \"" + nulColumn(column.name) + '"';
            walked.push_back(column.name);
        }
        if constexpr (std::is_same_v<Row, CapacityRow>)
            store_.table(name_, walked); // in the order of its index, which must be there
        CapacityRows rows = store_.query(sql + " FROM " + name_, {});
        for (std::size_t line = 1; !rows.atEnd(); rows.next(), ++line)
            readRow(rows, line);
        if (table_.isReadable && table_.rows.empty())
            findings_.report(tableIsEmpty, table_.source, 0, "");
    }

    void readRow(const CapacityRows& stored, std::size_t line)
    {
        Row row;
        row.line = line;
        bool good = true;
        for (const Column<Row>& column : columnsOf<Row>()) {
            const auto readInto = [&](auto member) { return readValue(stored, column.name, row.*member, line); };
            good = std::visit(readInto, column.member) && good;
        }
        table_.isReadable &= good;
        if (good)
            table_.rows.push_back(std::move(row));
    }

    bool isStored(const CapacityRows& stored, const char* column, bool asNumber, std::size_t line)
    {
        const std::string type = stored.text(typeColumn(column).c_str());
        if (asNumber ? type == "real" || type == "integer" : type == "text")
            return true;
        findings_.report(storedWrong, table_.source, line, std::string(column) + " is stored as " + type,
                         asNumber ? "a number" : "text");
        return false;
    }

    bool readValue(const CapacityRows& stored, const char* column, double& value, std::size_t line)
    {
        if (!isStored(stored, column, true, line))
            return false;
        value = stored.number(column);
        return checkValue(value, column, table_.source, line, findings_);
    }

    bool readValue(const CapacityRows& stored, const char* column, std::string& value, std::size_t line)
    {
        if (!isStored(stored, column, false, line))
            return false;
        value = stored.text(column);
        if (stored.number(nulColumn(column).c_str()) > 0)
            value += '\0'; // a control character like others
        return checkValue(value, column, table_.source, line, findings_);
    }

    CapacityStore& store_;
    std::string name_;
    Findings& findings_;
    Table<Row> table_;
};

/// Clears the unused space of each page, between the cell pointers and the cells. Some versions of
/// SQLite leave bytes there. Without these bytes, all versions give the same file for the same
/// tables.
void clearUnusedSpace(std::string& file)
{
    constexpr std::size_t fileHeader = 100; // on the first page, in front of its own header
    constexpr std::size_t pageSize = 4096;  // SQLite's default
    const auto numberAt = [&](std::size_t at) {
        return static_cast<std::size_t>(static_cast<unsigned char>(file[at])) * 256 +
               static_cast<unsigned char>(file[at + 1]);
    };
    for (std::size_t page = 0; page < file.size(); page += pageSize) {
        const std::size_t header = page == 0 ? fileHeader : page;
        const char type = file[header];
        const bool isLeaf = type == 10 || type == 13;
        if (!isLeaf && type != 2 && type != 5)
            continue; // not a page of a table or an index
        const std::size_t pointersEnd = header + (isLeaf ? 8 : 12) + 2 * numberAt(header + 3);
        const std::size_t cells = page + numberAt(header + 5);
        std::fill(file.begin() + static_cast<std::ptrdiff_t>(pointersEnd),
                  file.begin() + static_cast<std::ptrdiff_t>(cells), '\0');
    }
}

} // namespace

std::string databaseBytes(const CapacityTables& tables)
{
    const SqliteFile connection = openInMemory();
    if (!connection)
        throw std::runtime_error("no memory");
    run(connection, "BEGIN");
    for (const auto& [name, table] : tables.valves) {
        run(connection, "CREATE TABLE \"" + name + "\" (Pressure REAL, flow REAL, Bodysize TEXT, CV REAL)");
        std::vector<CapacityRow> rows = table.rows;
        // Of two Cvs with the same flow, the program takes the first: it must be the smaller one.
        std::ranges::stable_sort(rows, {}, [](const CapacityRow& row) { return std::pair(row.pressure, row.cv); });
        insertRows(connection, name, rows);
        run(connection, "CREATE INDEX \"" + name + ".Index\" ON \"" + name + "\" (Pressure, flow)");
    }
    for (const auto& [name, table] : tables.largeTanks) {
        // The program reads the table without ORDER BY. Stored by its key, it comes in ascending
        // volume.
        run(connection, "CREATE TABLE \"" + name +
                            "\" (TankVol REAL PRIMARY KEY, Pad REAL, DepadHFP REAL, DepadLFP REAL) WITHOUT ROWID");
        insertRows(connection, name, table.rows);
    }
    if (tables.label)
        insertLabel(connection, *tables.label);
    run(connection, "COMMIT");
    writeChecksum(connection.get()); // the program notices any change of the figures
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
        sqlite3_serialize(connection.get(), "main", &size, 0), sqlite3_free);
    if (!bytes)
        throw std::runtime_error("no memory");
    std::string file(reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size));
    clearUnusedSpace(file);
    return file;
}

CapacityTables readDatabase(const std::filesystem::path& file, Findings& findings)
{
    CapacityTables tables;
    const auto sourceOf = [&](std::string_view table) { return textOf(file) + ": " + std::string(table); };
    for (const ValveTableSpec& table : valveTableSpecs())
        tables.valves[std::string(table.name)].source = sourceOf(table.name);
    for (const LargeTankTableSpec& table : largeTankTableSpecs)
        tables.largeTanks[std::string(table.name)].source = sourceOf(table.name);
    if (const std::string reason = whyUnreadable(file); !reason.empty()) {
        findings.report(cannotBeOpened, textOf(file), 0, reason);
        return tables;
    }
    const NumberText numbers;
    CapacityStore store(textOf(file), numbers);
    store.keepFile();
    if (!isReadable(store, file, findings))
        return tables;
    const auto read = [&]<typename Row>(const std::string& name, Table<Row>& table) {
        store.beginClick(); // the next table may be readable although this one is not
        try {
            // Counted first: to read too many rows would take longer than the program waits.
            const double rows = store.query("SELECT count(*) AS n FROM " + name, {}).number("n");
            if (rows > mostRows)
                return findings.report(tooManyRows, table.source, 0, "there are " + std::to_string(std::lround(rows)),
                                       atMostRows);
            table = StoredTable<Row>(store, name, table.source, findings).read();
        } catch (const SilentFailure& failure) {
            findings.report(cannotBeRead, table.source, 0, reasonOf(failure));
        }
    };
    for (auto& [name, table] : tables.valves)
        read(name, table);
    for (auto& [name, table] : tables.largeTanks)
        read(name, table);
    tables.label = tablesLabel(store);
    return tables;
}

#include "capacity_database.h"

#include "base/failure.h"
#include "capacity/file_check.h"

#include <sqlite3.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <ostream>
#include <span>
#include <stdexcept>

namespace
{

struct CloseConnection
{
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
};
using Connection = std::unique_ptr<sqlite3, CloseConnection>;

struct FinalizeStatement
{
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

/// Removes the file when left, unless it has been renamed away by then.
struct TemporaryFile
{
    std::filesystem::path path;
    explicit TemporaryFile(std::filesystem::path temporary) : path(std::move(temporary)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
};

Connection createDatabase(const std::filesystem::path& file)
{
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    Connection connection(opened);
    if (result != SQLITE_OK)
        throw std::runtime_error(std::string(sqlite3_errstr(result)) + ": " +
                                 std::strerror(sqlite3_system_errno(opened)));
    return connection;
}

void require(bool success, const Connection& connection)
{
    if (!success)
        throw std::runtime_error(sqlite3_errmsg(connection.get()));
}

void run(const Connection& connection, const std::string& sql)
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

/// Fills the table `name`, whose columns stand in the order of `columns`.
template <typename Row>
void insertRows(const Connection& connection, const std::string& name, std::span<const Column<Row>> columns,
                const std::vector<Row>& rows)
{
    std::string sql = "INSERT INTO \"" + name + "\" VALUES (?";
    for (std::size_t i = 1; i < columns.size(); ++i)
        sql += ", ?";
    sqlite3_stmt* prepared = nullptr;
    require(sqlite3_prepare_v2(connection.get(), (sql + ")").c_str(), -1, &prepared, nullptr) == SQLITE_OK, connection);
    const Statement statement(prepared);
    for (const Row& row : rows) {
        int parameter = 0;
        for (const Column<Row>& column : columns) {
            ++parameter;
            std::visit([&](auto member) { bind(prepared, parameter, row.*member); }, column.member);
        }
        require(sqlite3_step(prepared) == SQLITE_DONE, connection);
        sqlite3_reset(prepared);
    }
}

void writeTables(const CapacityTables& tables, const Connection& connection)
{
    run(connection, "PRAGMA journal_mode = MEMORY"); // no journal beside the temporary file; not stored in it
    run(connection, "BEGIN");
    for (const auto& [name, rows] : tables.valves) {
        run(connection, "CREATE TABLE \"" + name + "\" (Pressure REAL, flow REAL, Bodysize TEXT, CV REAL)");
        insertRows<CapacityRow>(connection, name, capacityColumns, rows);
        run(connection, "CREATE INDEX \"" + name + ".Index\" ON \"" + name + "\" (Pressure, flow)");
    }
    for (const auto& [name, rows] : tables.largeTanks) {
        // Read without ORDER BY: stored by its key, the table comes in ascending volume all the same.
        run(connection, "CREATE TABLE \"" + name +
                            "\" (TankVol REAL PRIMARY KEY, Pad REAL, DepadHFP REAL, DepadLFP REAL) WITHOUT ROWID");
        insertRows<LargeTankRow>(connection, name, largeTankColumns, rows);
    }
    run(connection, "COMMIT");
    writeChecksum(connection.get()); // the program notices any change of the figures
}

} // namespace

void replaceDatabase(const CapacityTables& tables, const std::filesystem::path& file)
{
    const TemporaryFile temporary(file.string() + ".new-" + std::to_string(getpid()));
    std::error_code failure;
    std::filesystem::remove(temporary.path, failure);    // left by a killed run with the same process number
    writeTables(tables, createDatabase(temporary.path)); // closed again before it is renamed
    std::filesystem::rename(temporary.path, file, failure);
    if (failure)
        throw std::runtime_error(failure.message());
}

int buildCapacities(const std::vector<std::string>& arguments, std::ostream& messages)
{
    if (arguments.size() != 2) {
        messages << "usage: build_capacities IN_DIR OUT_FILE\n"
                    "Builds the data file OUT_FILE from the capacity tables, one CSV file each, in IN_DIR.\n";
        return 2;
    }
    const std::string& file = arguments[1];
    Findings findings(messages);
    const CapacityTables tables = readCapacityTables(arguments[0], findings);
    if (findings.errors() == 0) {
        try {
            replaceDatabase(tables, file);
        } catch (const std::runtime_error& failure) {
            findings.error(file, 0, std::string("cannot be written: ") + failure.what());
        }
    }
    const bool built = findings.errors() == 0;
    messages << "build_capacities: errors: " << findings.errors() << ", warnings: " << findings.warnings() << "; "
             << (built ? file + " is built" : "nothing is written") << '\n';
    return built ? 0 : 1;
}

#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orbinel::hosts {

class SqliteError : public std::runtime_error {
public:
    SqliteError(int code, const std::string& reason) : std::runtime_error(reason), code_(code) {}

    /// The primary result code, such as SQLITE_CORRUPT.
    [[nodiscard]] int code() const noexcept { return code_ & 0xff; }

private:
    int code_;
};

/// A prepared statement in use: bound from 1, read from 0. Ends its use when it is destroyed.
class SqliteStatement {
public:
    explicit SqliteStatement(sqlite3_stmt* statement) noexcept : statement_(statement) {}
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    SqliteStatement& bind(int index, std::int64_t number);
    SqliteStatement& bind(int index, double number);
    /// Without a copy: the text must stay as it is until the use of the statement ends.
    SqliteStatement& bind(int index, std::string_view text);

    /// True while there is a row.
    bool step();
    void run() {
        while (step()) {
        }
    }

    /// SQLITE_INTEGER, SQLITE_FLOAT, SQLITE_TEXT, SQLITE_BLOB or SQLITE_NULL.
    [[nodiscard]] int type(int column) const noexcept;
    [[nodiscard]] std::int64_t integer(int column) const noexcept;
    [[nodiscard]] double real(int column) const noexcept;
    [[nodiscard]] std::string text(int column) const;

private:
    void check(int code) const;

    sqlite3_stmt* const statement_;
};

/// One connection to a database file. Failures are thrown as `SqliteError`.
///
/// Threads: one at a time.
class SqliteDatabase {
public:
    enum class Access { readOnly, readWrite };

    /// Opens the file; one that is not there is made, unless for reading only. Waits for other processes no longer
    /// than the given time, here and later.
    SqliteDatabase(const std::filesystem::path& path, Access access, int busyMilliseconds);
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    /// Runs statements that give no rows.
    void execute(const char* sql);

    /// The statement, prepared once for the life of the connection. `sql` must be a literal.
    [[nodiscard]] SqliteStatement statement(const char* sql);

    /// How many rows the last change touched.
    [[nodiscard]] int changes() const noexcept;

private:
    struct Close {
        void operator()(sqlite3* connection) const noexcept { sqlite3_close_v2(connection); }
    };
    struct Finalise {
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
    };

    std::unique_ptr<sqlite3, Close> connection_;
    std::map<const char*, std::unique_ptr<sqlite3_stmt, Finalise>> statements_;  // by the literal's address
};

/// Everything between its construction and `commit`, or nothing of it.
class SqliteTransaction {
public:
    explicit SqliteTransaction(SqliteDatabase& database);
    ~SqliteTransaction();
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;

    void commit();

private:
    SqliteDatabase& database_;
    bool open_ = true;
};

}  // namespace orbinel::hosts

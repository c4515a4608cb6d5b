#include "hosts/linux/sqlite_database.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbinel::hosts {

SqliteStatement::~SqliteStatement() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

SqliteStatement& SqliteStatement::bind(int index, std::int64_t number) {
    check(sqlite3_bind_int64(statement_, index, number));
    return *this;
}

SqliteStatement& SqliteStatement::bind(int index, double number) {
    check(sqlite3_bind_double(statement_, index, number));
    return *this;
}

SqliteStatement& SqliteStatement::bind(int index, std::string_view text) {
    // A null pointer would bind NULL, which is not the empty text.
    const char* bytes = text.data() != nullptr ? text.data() : "";
    check(sqlite3_bind_text64(statement_, index, bytes, text.size(), SQLITE_STATIC, SQLITE_UTF8));
    return *this;
}

bool SqliteStatement::step() {
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) return true;
    if (code != SQLITE_DONE) check(code);
    return false;
}

int SqliteStatement::type(int column) const noexcept { return sqlite3_column_type(statement_, column); }

std::int64_t SqliteStatement::integer(int column) const noexcept { return sqlite3_column_int64(statement_, column); }

double SqliteStatement::real(int column) const noexcept { return sqlite3_column_double(statement_, column); }

std::string SqliteStatement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    if (bytes == nullptr) return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

void SqliteStatement::check(int code) const {
    if (code != SQLITE_OK) throw SqliteError(code, sqlite3_errmsg(sqlite3_db_handle(statement_)));
}

namespace {

/// SQLite would make the file readable by others, and gives the same mode to the files beside it. A file that is there
/// is not opened: closing it would let go of the locks that SQLite may hold on it in this process.
void closeToOtherPeople(const std::filesystem::path& path) noexcept {
    const int made = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (made >= 0) {
        close(made);
    } else {
        static_cast<void>(chmod(path.c_str(), S_IRUSR | S_IWUSR));  // where that fails, SQLite says what is wrong
    }
}

}  // namespace

SqliteDatabase::SqliteDatabase(const std::filesystem::path& path, Access access, int busyMilliseconds) {
    const int mode = access == Access::readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    if (access == Access::readWrite) closeToOtherPeople(path);
    sqlite3* connection = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &connection, mode | SQLITE_OPEN_NOMUTEX, nullptr);
    connection_.reset(connection);  // also where opening failed
    if (code != SQLITE_OK) throw SqliteError(code, sqlite3_errstr(code));
    sqlite3_busy_timeout(connection, busyMilliseconds);
}

void SqliteDatabase::execute(const char* sql) {
    const int code = sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) throw SqliteError(code, sqlite3_errmsg(connection_.get()));
}

SqliteStatement SqliteDatabase::statement(const char* sql) {
    auto& prepared = statements_[sql];
    if (!prepared) {
        sqlite3_stmt* statement = nullptr;
        const int code = sqlite3_prepare_v3(connection_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
        if (code != SQLITE_OK) throw SqliteError(code, sqlite3_errmsg(connection_.get()));
        prepared.reset(statement);
    }
    return SqliteStatement(prepared.get());
}

int SqliteDatabase::changes() const noexcept { return sqlite3_changes(connection_.get()); }

SqliteTransaction::SqliteTransaction(SqliteDatabase& database) : database_(database) {
    database_.statement("BEGIN IMMEDIATE").run();
}

SqliteTransaction::~SqliteTransaction() {
    if (!open_) return;
    try {
        database_.execute("ROLLBACK");
    } catch (const SqliteError&) {
        // SQLite has rolled back of its own accord, as it does when the disk is full.
    }
}

void SqliteTransaction::commit() {
    database_.statement("COMMIT").run();
    open_ = false;
}

}  // namespace orbinel::hosts

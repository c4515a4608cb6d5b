#include "hosts/linux/group_reader.hpp"

#include <utility>

#include "hosts/linux/store_file.hpp"

namespace orbinel::hosts {

namespace {

constexpr int busyMilliseconds = 50;

}  // namespace

GroupReader::GroupReader(std::filesystem::path path, std::shared_ptr<const platform::Json> json)
    : path_(std::move(path)), json_(std::move(json)) {}

template <typename Read>
auto GroupReader::read(Read read) -> std::optional<decltype(read(std::declval<SqliteDatabase&>()))> {
    MutexLock lock(mutex_);
    if (closed_) return std::nullopt;
    try {
        if (!database_) {
            database_ = std::make_unique<SqliteDatabase>(path_, SqliteDatabase::Access::readOnly, busyMilliseconds);
            known_.clear();
        }
        return read(*database_);
    } catch (const SqliteError&) {
        database_.reset();  // the next read may find the fresh file that takes its place
        return std::nullopt;
    }
}

std::optional<Value> GroupReader::value(std::string_view key) {
    return read([&](SqliteDatabase& database) ORBINEL_REQUIRES(mutex_) {
        forgetIfWritten(database);
        if (const auto known = known_.find(key); known != known_.end()) return known->second;
        auto query = database.statement("SELECT kind, content FROM stored_values WHERE key = ?");
        query.bind(1, key);
        auto value = query.step() ? readValue(query, 0, *json_).value_or(Value()) : Value();
        known_.emplace(key, value);
        return value;
    });
}

/// A write that comes between this look and the reading is seen at the next look: what was read is then read again.
void GroupReader::forgetIfWritten(SqliteDatabase& database) {
    auto query = database.statement("PRAGMA data_version");
    const auto version = query.step() ? query.integer(0) : 0;
    if (std::exchange(version_, version) != version) known_.clear();
}

std::optional<std::vector<std::string>> GroupReader::keys() {
    return read([&](SqliteDatabase& database) {
        std::vector<std::string> keys;
        auto query = database.statement("SELECT key FROM stored_values");
        while (query.step()) keys.push_back(query.text(0));
        return keys;
    });
}

void GroupReader::forget() {
    MutexLock lock(mutex_);
    known_.clear();
}

void GroupReader::close() {
    MutexLock lock(mutex_);
    closed_ = true;
    known_.clear();
    database_.reset();
}

}  // namespace orbinel::hosts

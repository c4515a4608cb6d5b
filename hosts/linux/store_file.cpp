#include "hosts/linux/store_file.hpp"

#include <algorithm>
#include <ctime>
#include <random>
#include <system_error>

namespace orbinel::hosts {

namespace {

constexpr int busyMilliseconds = 500;
constexpr std::int64_t schemaVersion = 1;
constexpr const char* damagedSuffix = ".damaged-";
constexpr std::size_t maximumSetAside = 9;  // three stores of up to three files

constexpr const char* schema = R"(
CREATE TABLE stored_values(key TEXT PRIMARY KEY, kind TEXT NOT NULL, content) WITHOUT ROWID;
CREATE TABLE elements(id INTEGER PRIMARY KEY, key TEXT NOT NULL, position INTEGER NOT NULL, state INTEGER NOT NULL,
                      json TEXT NOT NULL);
CREATE INDEX queued_elements_by_key ON elements(key) WHERE state = 0;
CREATE TABLE launches(number INTEGER NOT NULL);
INSERT INTO launches VALUES(0);
PRAGMA user_version = 1;
)";

// Each launch numbers its elements in a range of its own, so that ids need no reading back from the file. A launch
// that cannot write its number to the file takes one at random, from the maximum on.
constexpr int launchShift = 32;
constexpr std::int64_t maximumLaunches = std::int64_t{1} << 30;
constexpr std::int64_t maximumPosition = std::int64_t{1} << 60;

bool isDamage(const SqliteError& error) {
    // SQLITE_ERROR: the statements are right, so the tables are not those that they were written for.
    return error.code() == SQLITE_CORRUPT || error.code() == SQLITE_NOTADB || error.code() == SQLITE_ERROR;
}

bool isThere(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::exists(std::filesystem::symlink_status(path, error));
}

/// Whether something else than a file is where the file should be. A file that merely cannot be opened (no descriptor
/// is left, no permission) is none of that: it may be sound.
bool isBlocked(const std::filesystem::path& path) {
    if (!isThere(path)) return false;
    std::error_code error;
    switch (std::filesystem::status(path, error).type()) {
        case std::filesystem::file_type::regular:
        case std::filesystem::file_type::none:
        case std::filesystem::file_type::unknown:
            return false;
        default:
            return true;  // a directory, a link that leads nowhere
    }
}

/// A name that is free, beside the path.
std::filesystem::path nameForDamaged(const std::filesystem::path& path) {
    const std::string base = path.string() + damagedSuffix + std::to_string(std::time(nullptr));
    std::string name = base;
    for (int number = 2; isThere(name); ++number) name = base + "-" + std::to_string(number);
    return name;
}

}  // namespace

std::optional<Value> readValue(const SqliteStatement& row, int column, const platform::Json& json) {
    StoredValue stored{row.text(column), {}};
    switch (row.type(column + 1)) {
        case SQLITE_INTEGER:
            stored.content = row.integer(column + 1);
            break;
        case SQLITE_FLOAT:
            stored.content = row.real(column + 1);
            break;
        case SQLITE_NULL:
            break;
        default:
            stored.content = row.text(column + 1);
    }
    return decodeValue(stored, json);
}

StoreFile::StoreFile(std::filesystem::path path, std::shared_ptr<const platform::Json> json,
                     std::shared_ptr<ProblemReports> problems)
    : path_(std::move(path)), json_(std::move(json)), problems_(std::move(problems)) {}

StoreFile::Loaded StoreFile::open(bool mayBeSetAside) {
    mayBeSetAside_ = mayBeSetAside;
    for (bool again = true;;) {
        try {
            connect();
            return readEverything();
        } catch (const SqliteError& error) {
            database_.reset();
            const bool blocked = error.code() == SQLITE_CANTOPEN && isBlocked(path_);
            if (std::exchange(again, false) && (isDamage(error) || blocked) && setAside(error.what())) continue;
            reportOnce("could not be opened and is kept in memory only", error.what());
            return {};
        }
    }
}

void StoreFile::connect() {
    written_.clear();
    database_ = std::make_unique<SqliteDatabase>(path_, SqliteDatabase::Access::readWrite, busyMilliseconds);
    database_->execute("PRAGMA journal_mode = WAL");
    database_->execute("PRAGMA synchronous = NORMAL");
    database_->execute("PRAGMA secure_delete = ON");  // so that a rewritten page keeps nothing of what it held
    const auto version = [&] { return readNumber("PRAGMA user_version"); };
    if (version() == 0) {
        SqliteTransaction transaction(*database_);
        // Another process may have made the tables meanwhile.
        if (version() == 0) database_->execute(schema);
        transaction.commit();
    }
    if (version() != schemaVersion) throw SqliteError(SQLITE_NOTADB, "it was written by another version");
}

StoreFile::Loaded StoreFile::readEverything() {
    Loaded loaded;
    readValues(loaded);
    readElements(loaded);
    loaded.firstNewId = numberThisLaunch() << launchShift;
    return loaded;
}

void StoreFile::readValues(Loaded& loaded) {
    auto query = database_->statement("SELECT key, kind, content FROM stored_values");
    while (query.step()) {
        if (auto value = readValue(query, 1, *json_)) {
            loaded.values.emplace_back(query.text(0), std::make_shared<const Value>(std::move(*value)));
        } else {
            reportOnce("holds a value that cannot be read", "the value counts as absent");
        }
    }
}

void StoreFile::readElements(Loaded& loaded) {
    auto query = database_->statement("SELECT key, id, position, state, json FROM elements");
    while (query.step()) {
        const auto state = query.integer(3);
        const bool stateIsKnown = state >= 0 && state <= static_cast<std::int64_t>(ElementState::givenUp);
        const auto position = query.integer(2);
        const bool positionIsSound = position >= -maximumPosition && position <= maximumPosition;
        if (!stateIsKnown || !positionIsSound) {
            throw SqliteError(SQLITE_CORRUPT, "an element makes no sense");
        }
        ElementRow row{query.integer(1), position, static_cast<ElementState>(state), query.text(4)};
        written_.insert(row.id);
        loaded.elements.emplace_back(query.text(0), std::move(row));
    }
}

std::int64_t StoreFile::numberThisLaunch() {
    try {
        SqliteTransaction transaction(*database_);
        // Beyond the ids in the file, too: they may come from a file that was set aside while it was in use. Those of
        // launches that took a random number are beyond all others and do not count.
        database_
            ->statement(
                "UPDATE launches SET number = MAX(number + 1, (SELECT COALESCE(MAX(id), 0) / ?1 + 1 FROM elements "
                "WHERE id < ?1 * ?2))")
            .bind(1, std::int64_t{1} << launchShift)
            .bind(2, maximumLaunches)
            .run();
        const auto number = readNumber("SELECT number FROM launches");
        if (number < 1 || number >= maximumLaunches) throw SqliteError(SQLITE_CORRUPT, "launches are not numbered");
        transaction.commit();
        return number;
    } catch (const SqliteError& error) {
        if (isDamage(error)) throw;
        reportOnce("could not be written to", error.what());
        return maximumLaunches + static_cast<std::int64_t>(std::random_device()() % maximumLaunches);
    }
}

std::int64_t StoreFile::readNumber(const char* sql) {
    auto query = database_->statement(sql);
    return query.step() ? query.integer(0) : 0;
}

bool StoreFile::setAside(const std::string& reason) {
    if (!mayBeSetAside_) return false;
    thinSetAside();
    const auto aside = nameForDamaged(path_);
    std::error_code error;
    std::filesystem::rename(path_, aside, error);
    if (error) return false;
    for (const char* companion : {"-wal", "-shm"}) {
        std::error_code missing;
        std::filesystem::rename(path_.string() + companion, aside.string() + companion, missing);
    }
    untold_.push_back("The store \"" + path_.filename().string() + "\" could not be read (" + reason +
                      ") and was set aside as \"" + aside.filename().string() + "\".");
    return true;
}

void StoreFile::tellProblems() {
    for (auto& sentence : std::exchange(untold_, {})) problems_->report(std::move(sentence));
}

void StoreFile::reportOnce(const std::string& what, const std::string& reason) {
    if (!reported_.insert(what).second) return;
    untold_.push_back("The store \"" + path_.filename().string() + "\" " + what + " (" + reason + ").");
}

template <typename Change>
bool StoreFile::transact(Change change) {
    for (bool again = true; database_;) {
        justPut_.clear();
        try {
            SqliteTransaction transaction(*database_);
            change();
            transaction.commit();
            written_.insert(justPut_.begin(), justPut_.end());
            return true;
        } catch (const SqliteError& error) {
            if (std::exchange(again, false) && isDamage(error)) {
                database_.reset();
                if (setAside(error.what())) open(true);
                if (database_) continue;
            }
            reportOnce("could not be written to", error.what());
            return false;
        }
    }
    return false;
}

bool StoreFile::writeValues(const ValueBatch& batch) {
    return transact([&] {
        for (const auto& [key, value] : batch) writeValue(key, value.get());
    });
}

bool StoreFile::insert(std::string_view key, const KeyReplacement& replacement, const ElementRow& row) {
    return transact([&] {
        apply(key, replacement);
        put(key, row);
    });
}

bool StoreFile::requeue(std::string_view key, const ElementRow& row) {
    written_.erase(row.id);
    return transact([&] { put(key, row); });
}

bool StoreFile::finish(platform::ElementId id) {
    written_.erase(id);
    return transact([&] { database_->statement("DELETE FROM elements WHERE id = ?").bind(1, id).run(); });
}

bool StoreFile::giveUp(platform::ElementId id) {
    return transact([&] { setState(id, ElementState::givenUp); });
}

bool StoreFile::reclaim(std::string_view key, const StoreContents::Reclaimed& reclaimed) {
    if (reclaimed.returned.empty() && reclaimed.dropped.empty()) return true;
    for (const auto* rows : {&reclaimed.returned, &reclaimed.dropped}) {
        for (const auto& row : *rows) written_.erase(row.id);
    }
    return transact([&] {
        for (const auto& row : reclaimed.returned) put(key, row);
        for (const auto& row : reclaimed.dropped) {
            database_->statement("DELETE FROM elements WHERE id = ?").bind(1, row.id).run();
        }
    });
}

bool StoreFile::replace(std::string_view key, const KeyReplacement& replacement) {
    if (!replacement.needed) return true;
    return transact([&] { apply(key, replacement); });
}

std::string StoreFile::erase(const std::vector<std::string>& keys) {
    std::string reason;
    try {
        eraseInFile(keys);
    } catch (const SqliteError& error) {
        reason = error.what();
    }
    if (!removeSetAside() && reason.empty()) reason = "a file that was set aside cannot be removed";
    if (reason.empty()) return {};
    return "The store \"" + path_.filename().string() + "\" could not be erased (" + reason + ").";
}

void StoreFile::eraseInFile(const std::vector<std::string>& keys) {
    if (!database_) {
        // It could not be opened, so what it holds is of no use to anybody.
        for (const char* companion : {"", "-wal", "-shm"}) {
            std::error_code error;
            std::filesystem::remove(path_.string() + companion, error);
            if (error && error != std::errc::not_a_directory) throw SqliteError(SQLITE_IOERR, error.message().c_str());
        }
        return;
    }
    {
        SqliteTransaction transaction(*database_);
        for (const auto& key : keys) {
            database_->statement("DELETE FROM stored_values WHERE key = ?").bind(1, key).run();
            database_->statement("DELETE FROM elements WHERE key = ?").bind(1, key).run();
        }
        transaction.commit();
    }
    // What was removed is still in free pages of the file and in its log.
    database_->execute("VACUUM");
    if (readNumber("PRAGMA wal_checkpoint(TRUNCATE)") != 0) throw SqliteError(SQLITE_BUSY, "another process reads it");
}

bool StoreFile::removeSetAside() const {
    bool removed = true;
    for (const auto& path : setAsideBefore()) {
        std::error_code error;
        std::filesystem::remove_all(path, error);
        removed &= !error;
    }
    return removed;
}

/// Oldest first; each is followed by its companions.
std::vector<std::filesystem::path> StoreFile::setAsideBefore() const {
    const auto prefix = path_.filename().string() + damagedSuffix;
    std::error_code error;
    std::vector<std::filesystem::path> found;
    for (std::filesystem::directory_iterator entry(path_.parent_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().filename().string().starts_with(prefix)) found.push_back(entry->path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

/// A disk that goes on damaging files must not be filled with them.
void StoreFile::thinSetAside() const {
    const auto found = setAsideBefore();
    for (std::size_t i = 0; i + maximumSetAside < found.size(); ++i) {
        std::error_code error;
        std::filesystem::remove(found[i], error);  // a directory may hold anything: it stays
    }
}

std::vector<ElementRow> StoreFile::take(std::string_view key, const KeyReplacement& replacement,
                                        std::vector<ElementRow> rows) {
    if (rows.empty() && !replacement.needed) return rows;
    std::unordered_set<platform::ElementId> takenByAnother;
    transact([&] {
        takenByAnother.clear();
        apply(key, replacement);
        for (const auto& row : rows) {
            setState(row.id, ElementState::inFlight);
            if (database_->changes() == 0 && written_.contains(row.id)) takenByAnother.insert(row.id);
        }
    });
    std::erase_if(rows, [&](const ElementRow& row) { return takenByAnother.contains(row.id); });
    return rows;
}

void StoreFile::writeValue(const std::string& key, const Value* value) {
    removeKey(key);
    if (value == nullptr || value->isAbsent()) return;
    const auto stored = encodeValue(*value, *json_);
    if (!stored) {
        reportOnce("was given a value that cannot be stored", "it nests too deep");
        return;
    }
    auto insertion = database_->statement("INSERT INTO stored_values(key, kind, content) VALUES(?, ?, ?)");
    insertion.bind(1, key).bind(2, stored->kind);
    if (const auto* integer = std::get_if<std::int64_t>(&stored->content)) insertion.bind(3, *integer);
    if (const auto* real = std::get_if<double>(&stored->content)) insertion.bind(3, *real);
    if (const auto* text = std::get_if<std::string>(&stored->content)) insertion.bind(3, *text);
    insertion.run();
}

/// What is in flight stays: only the value and the queued elements are the array.
void StoreFile::removeKey(std::string_view key) {
    database_->statement("DELETE FROM stored_values WHERE key = ?").bind(1, key).run();
    database_->statement("DELETE FROM elements WHERE key = ? AND state = 0").bind(1, key).run();
}

void StoreFile::apply(std::string_view key, const KeyReplacement& replacement) {
    if (!replacement.needed) return;
    removeKey(key);
    for (const auto& row : replacement.rows) put(key, row);
}

/// Also an element that an earlier failure has kept out of the file.
void StoreFile::put(std::string_view key, const ElementRow& row) {
    database_->statement("INSERT OR REPLACE INTO elements(id, key, position, state, json) VALUES(?, ?, ?, ?, ?)")
        .bind(1, row.id)
        .bind(2, key)
        .bind(3, row.position)
        .bind(4, static_cast<std::int64_t>(row.state))
        .bind(5, row.json)
        .run();
    justPut_.push_back(row.id);
}

void StoreFile::setState(platform::ElementId id, ElementState state) {
    // Only what is not so already counts as changed: an element cannot be taken out twice.
    database_->statement("UPDATE elements SET state = ?1 WHERE id = ?2 AND state <> ?1")
        .bind(1, static_cast<std::int64_t>(state))
        .bind(2, id)
        .run();
}

}  // namespace orbinel::hosts

#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "hosts/linux/problem_reports.hpp"
#include "hosts/linux/sqlite_database.hpp"
#include "hosts/linux/store_contents.hpp"
#include "hosts/linux/stored_value.hpp"

namespace orbinel::hosts {

/// Values to write, an empty one to remove, in the order in which they were set.
using ValueBatch = std::vector<std::pair<std::string, SharedValue>>;

/// What an operation by element first has to do with its key: what was set under it becomes elements.
struct KeyReplacement {
    bool needed = false;
    std::vector<ElementRow> rows;
};

/// Reads one row of the table of values, selected as kind, content from the given column on.
[[nodiscard]] std::optional<Value> readValue(const SqliteStatement& row, int column, const platform::Json& json);

/// The file of one store. Each change is a transaction of its own; one that fails is reported and leaves the file as it
/// was.
///
/// A file that cannot be used is set aside (renamed) and a fresh one made in its place. Where that does not help
/// either, the store is in memory only and changes come to nothing. Threads: one at a time (the storage thread).
class StoreFile {
public:
    struct Loaded {
        std::vector<std::pair<std::string, SharedValue>> values;
        std::vector<std::pair<std::string, ElementRow>> elements;
        platform::ElementId firstNewId = 1;  // no other launch, of any process, uses this id or the next 2^32
    };

    StoreFile(std::filesystem::path path, std::shared_ptr<const platform::Json> json,
              std::shared_ptr<ProblemReports> problems);

    /// Opens the file and reads everything. Only the owner of the directory may set files aside: another process would
    /// take the owner's file away.
    Loaded open(bool mayBeSetAside);

    /// Hands over what went wrong since the last time. Apart from the changes themselves, so that whoever hears of it
    /// may call the store.
    void tellProblems();

    /// From now on changes come to nothing.
    void close() noexcept { database_.reset(); }

    /// Each is false where the change is not in the file.
    bool writeValues(const ValueBatch& batch);
    bool insert(std::string_view key, const KeyReplacement& replacement, const ElementRow& row);
    bool requeue(std::string_view key, const ElementRow& row);
    bool finish(platform::ElementId id);
    bool giveUp(platform::ElementId id);
    bool reclaim(std::string_view key, const StoreContents::Reclaimed& reclaimed);
    bool replace(std::string_view key, const KeyReplacement& replacement);

    /// Removes all that the keys hold, rewrites the file so that nothing removed can be read from it, and removes the
    /// files set aside. The empty text, or one sentence about what is left.
    std::string erase(const std::vector<std::string>& keys);

    /// Marks the rows in flight. Those that another process has taken meanwhile are left out of the answer.
    std::vector<ElementRow> take(std::string_view key, const KeyReplacement& replacement, std::vector<ElementRow> rows);

private:
    template <typename Change>
    bool transact(Change change);

    void eraseInFile(const std::vector<std::string>& keys);
    [[nodiscard]] bool removeSetAside() const;
    [[nodiscard]] std::vector<std::filesystem::path> setAsideBefore() const;
    void thinSetAside() const;
    void connect();
    [[nodiscard]] Loaded readEverything();
    void readValues(Loaded& loaded);
    void readElements(Loaded& loaded);
    [[nodiscard]] std::int64_t numberThisLaunch();
    [[nodiscard]] std::int64_t readNumber(const char* sql);
    bool setAside(const std::string& reason);
    void reportOnce(const std::string& what, const std::string& reason);

    void writeValue(const std::string& key, const Value* value);
    void removeKey(std::string_view key);
    void apply(std::string_view key, const KeyReplacement& replacement);
    void put(std::string_view key, const ElementRow& row);
    void setState(platform::ElementId id, ElementState state);

    const std::filesystem::path path_;
    const std::shared_ptr<const platform::Json> json_;
    const std::shared_ptr<ProblemReports> problems_;
    std::unique_ptr<SqliteDatabase> database_;         // null: in memory only
    std::unordered_set<platform::ElementId> written_;  // elements that the file is known to hold as the memory does
    std::vector<platform::ElementId> justPut_;         // in the running transaction
    std::set<std::string> reported_;
    std::vector<std::string> untold_;
    bool mayBeSetAside_ = false;
};

}  // namespace orbinel::hosts

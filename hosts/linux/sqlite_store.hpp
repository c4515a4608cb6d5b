#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/mutex.hpp"
#include "hosts/linux/directory_owner.hpp"
#include "hosts/linux/group_reader.hpp"
#include "hosts/linux/problem_reports.hpp"
#include "hosts/linux/storage_thread.hpp"
#include "hosts/linux/store_contents.hpp"
#include "hosts/linux/store_file.hpp"
#include "orbinel/platform/defaults.hpp"
#include "orbinel/platform/json.hpp"

namespace orbinel::hosts {

/// What the stores of one data directory share.
struct Storage {
    Storage(std::filesystem::path where, std::shared_ptr<const platform::Json> parser)
        : directory(std::move(where)), json(std::move(parser)) {}

    const std::filesystem::path directory;
    const std::shared_ptr<const platform::Json> json;
    const std::shared_ptr<ProblemReports> problems = std::make_shared<ProblemReports>();
    DirectoryOwner owner;  // of the storage thread alone
    bool owned = false;    // of the storage thread alone
    StorageThread thread;
};

/// One store: its contents in memory, which every call sees at once, and its file, which follows on the storage thread.
///
/// Each change is made in memory and put in line for the file in one step, so that both see the same order. Changes
/// that come before the file has been read are kept and made right after.
class SqliteStore final : public platform::DefaultsStore, public std::enable_shared_from_this<SqliteStore> {
public:
    enum class Sharing { ownProcess, otherProcesses };

    SqliteStore(std::shared_ptr<Storage> storage, const std::string& fileName, Sharing sharing);

    /// To be called once, right after the construction: has the file read on the storage thread.
    void startLoading();

    /// Closes the file once the changes so far are in it; the store goes on in memory.
    void end();

    [[nodiscard]] Value value(std::string_view key) const noexcept override;
    void set(std::string_view key, Value value) noexcept override;
    [[nodiscard]] std::vector<std::string> keys() const noexcept override;
    void synchronize() noexcept override;
    void append(std::string_view key, std::string json) noexcept override;
    void appendInFlight(std::string_view key, std::string json,
                        std::function<void(std::optional<platform::ElementId>)> committed) noexcept override;
    void take(std::string_view key, std::function<void(std::vector<platform::StoredElement>)> taken) noexcept override;
    void count(std::string_view key, std::function<void(std::size_t)> counted) noexcept override;
    void requeue(std::string_view key, platform::ElementId id, std::function<void()> requeued) noexcept override;
    void finish(std::string_view key, platform::ElementId id) noexcept override;
    void giveUp(std::string_view key, platform::ElementId id) noexcept override;
    void reclaim(std::string_view key, std::function<void(platform::ReclaimedElements)> reclaimed) noexcept override;
    void erase(std::vector<std::string> keys, std::function<void(std::string)> erased) noexcept override;

private:
    using Change = std::function<void(StoreContents&)>;
    using Write = std::function<void(StoreFile&)>;
    using Waiting = std::map<std::string, SharedValue, std::less<>>;  // absent: removed

    /// What becomes of a value that is no array where its key is worked on by element. While it stays, the key has no
    /// elements but those in flight, which stay there, too.
    enum class PlainValue { stays, isReplaced };

    /// What an operation by element finds out in memory, for its write to the file.
    struct ElementPlan {
        KeyReplacement replacement;
        std::vector<ElementRow> rows;
        StoreContents::Reclaimed reclaimed;
        std::size_t count = 0;
    };
    using PlanPointer = std::shared_ptr<ElementPlan>;

    void load();
    void takeOver(StoreFile::Loaded loaded);
    void change(Change change, Write write);
    void changeElements(std::string_view key, const PlanPointer& plan, PlainValue plainValue, Change change,
                        Write write);
    static bool forgetUnlessStaying(Waiting& waiting, std::string_view key, PlainValue plainValue);
    [[nodiscard]] bool isKnownToHoldNothing(std::string_view key) const ORBINEL_REQUIRES(mutex_);
    void makeChange(Change change) ORBINEL_REQUIRES(mutex_);
    void putInLine(Write write) ORBINEL_REQUIRES(mutex_);
    void runNextWrite();
    void forgetWritten(const ValueBatch& batch);
    [[nodiscard]] bool isLoaded() const ORBINEL_EXCLUDES(mutex_);
    void waitUntilLoaded() const ORBINEL_EXCLUDES(mutex_);

    const std::shared_ptr<Storage> storage_;
    const std::unique_ptr<GroupReader> reader_;  // only where other processes share the store
    StoreFile file_;                             // of the storage thread alone

    mutable Mutex mutex_;
    mutable ConditionVariable loadedChanged_;
    bool loaded_ ORBINEL_GUARDED_BY(mutex_) = false;
    bool owned_ ORBINEL_GUARDED_BY(mutex_) = false;
    StoreContents contents_ ORBINEL_GUARDED_BY(mutex_);
    std::vector<Change> beforeLoading_ ORBINEL_GUARDED_BY(mutex_);
    std::deque<Write> writes_ ORBINEL_GUARDED_BY(mutex_);
    Waiting unsynchronised_ ORBINEL_GUARDED_BY(mutex_);
    Waiting unwritten_ ORBINEL_GUARDED_BY(mutex_);  // with a reader only
};

}  // namespace orbinel::hosts

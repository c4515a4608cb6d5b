#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "base/mutex.hpp"
#include "orbinel/platform/defaults.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// What was delivered for one content variable. Kinds are checked where it is used: it may come from any backend.
struct ContentRecord {
    explicit ContentRecord(Dictionary record);
    ContentRecord(const ContentRecord&) = delete;
    ContentRecord& operator=(const ContentRecord&) = delete;

    const Dictionary stored;  // "content_id", "variant_id", "variable_name", "new_value"
    const Value& newValue;    // in `stored`; absent where the variable was delivered without one
    const std::int32_t contentId;
    const std::int32_t variantId;
    mutable std::atomic<std::uint64_t> loggedIn{0};  // the number of the session record that last got a log of it
};

/// The content variables that outlive the process: a store of their own, and in memory what has been read of it, so
/// that reading a variable again costs a look-up. That a variable is not there is remembered, too.
///
/// Threads: any. The store is never called with the lock held, so a record may be read while it is replaced: what is
/// read before a change is not remembered after it.
class ContentCache {
public:
    ContentCache(platform::Defaults& defaults, const platform::Json& json);

    /// Opens the store ahead of its first use, so that a first read does not wait for the disk. Does not wait itself.
    void open() { (void)store(); }

    /// The record of that name, or nothing.
    [[nodiscard]] std::shared_ptr<const ContentRecord> find(std::string_view name);

    /// Writes a record, replacing any earlier one of its name, and commits.
    void insert(const std::string& name, Dictionary record);

    /// Removes the records of those names (elements that are no texts are passed over), and commits.
    void remove(const Array& names);

    /// Keeps in mind that the variable came from a test, in order and as often as it did.
    void addTestVariable(const std::string& name);

    /// Removes the records of every test, and what was kept in mind of them.
    void removeTestVariables();

    /// Whether a variable of that name can be kept. The list of tests lies under a name of its own among them.
    [[nodiscard]] static bool canHold(std::string_view name) noexcept;

private:
    struct Remembered {
        const std::string name;
        const std::shared_ptr<const ContentRecord> record;  // null: known not to be there
    };
    // By the name inside; such keys keep their hash beside them, so that a look-up computes one only.
    using ByName = std::unordered_map<std::string_view, std::unique_ptr<const Remembered>>;

    [[nodiscard]] std::shared_ptr<const ContentRecord> readStored(std::string_view name) const;
    void remember(std::string_view name, std::shared_ptr<const ContentRecord> record, std::uint64_t readAt);
    void forget(std::string_view name);

    [[nodiscard]] std::shared_ptr<platform::DefaultsStore> store() const;

    platform::Defaults& defaults_;
    mutable Mutex storeMutex_;
    mutable std::shared_ptr<platform::DefaultsStore> store_ ORBINEL_GUARDED_BY(storeMutex_);  // once it is open
    const platform::Json& json_;

    Mutex mutex_;
    ByName remembered_ ORBINEL_GUARDED_BY(mutex_);
    std::uint64_t changes_ ORBINEL_GUARDED_BY(mutex_) = 0;
};

}  // namespace orbinel

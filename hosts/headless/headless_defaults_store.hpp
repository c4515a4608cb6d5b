#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/mutex.hpp"
#include "orbinel/platform/defaults.hpp"
#include "orbinel/platform/json.hpp"

namespace orbinel::headless {

/// One store in memory: what reads see, and what a kill would leave.
///
/// An array that is worked on by element is one object in both, so that its changes are durable at once; `set` puts
/// something else into the former alone, until `synchronize`.
class HeadlessDefaultsStore final : public platform::DefaultsStore {
public:
    explicit HeadlessDefaultsStore(std::shared_ptr<platform::Json> json);

    /// Reads see again what a kill would leave.
    void dropUnsynchronised();

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
    using Elements = std::vector<platform::StoredElement>;
    using Content = std::variant<Value, std::shared_ptr<Elements>>;
    using Contents = std::map<std::string, Content, std::less<>>;

    struct InFlight {
        platform::StoredElement element;
        bool givenUp = false;
    };

    [[nodiscard]] std::optional<Content> copyOf(std::string_view key) const ORBINEL_EXCLUDES(mutex_);
    [[nodiscard]] platform::StoredElement numbered(std::string json) ORBINEL_REQUIRES(mutex_);
    [[nodiscard]] bool isArray(std::string_view key) const ORBINEL_REQUIRES(mutex_);
    /// Whether there is a value that is no array. Its key has no elements but those in flight, which stay there.
    [[nodiscard]] bool holdsPlainValue(std::string_view key) const ORBINEL_REQUIRES(mutex_);
    [[nodiscard]] Elements& elementsOf(std::string_view key) ORBINEL_REQUIRES(mutex_);
    [[nodiscard]] Elements elementsIn(const Value& value) ORBINEL_REQUIRES(mutex_);
    [[nodiscard]] Elements takeElements(std::string_view key) ORBINEL_REQUIRES(mutex_);
    [[nodiscard]] Elements takeQueued(std::string_view key) ORBINEL_EXCLUDES(mutex_);
    [[nodiscard]] platform::ReclaimedElements reclaimNow(std::string_view key) ORBINEL_EXCLUDES(mutex_);
    [[nodiscard]] std::optional<InFlight> extractInFlight(std::string_view key, platform::ElementId id)
        ORBINEL_REQUIRES(mutex_);

    const std::shared_ptr<platform::Json> json_;

    mutable Mutex mutex_;
    Contents current_ ORBINEL_GUARDED_BY(mutex_);
    Contents committed_ ORBINEL_GUARDED_BY(mutex_);
    std::set<std::string, std::less<>> uncommitted_ ORBINEL_GUARDED_BY(mutex_);  // keys where the two may differ
    std::map<std::string, std::vector<InFlight>, std::less<>> inFlight_ ORBINEL_GUARDED_BY(mutex_);  // oldest first
    platform::ElementId lastId_ ORBINEL_GUARDED_BY(mutex_) = 0;
};

}  // namespace orbinel::headless

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orbinel/value.hpp"

namespace orbinel::platform {

/// Identifies one element of an array within its store, also across launches.
using ElementId = std::int64_t;

struct StoredElement {
    ElementId id = 0;
    std::string json;  // as it was appended
};

/// What `reclaim` found of elements that an earlier launch had taken out.
struct ReclaimedElements {
    std::size_t returned = 0;          // are queued again, before all others and in their old order
    std::vector<std::string> dropped;  // had been given up; their JSON, for a report
};

/// One named store of typed values that outlives the process.
///
/// Values: reads see earlier writes of the same process at once. Writes reach the disk behind the caller's back, in
/// order, one transaction up to each `synchronize`; a process that is killed finds all of such a transaction or none.
/// Absent values, dates, NaN and infinities inside a container are left out when it is written.
///
/// Arrays by element: an array may also be worked on element by element, each a JSON text. `value` of such a key gives
/// the whole array, parsed (elements that do not parse as texts); an array that was `set` can be taken by element.
/// An element is queued (part of the array), in flight (taken out, but not forgotten: kept beside the array, where
/// `value` does not show it), or gone. Every change of an element is a transaction of its own, and committed when
/// its completion runs.
///
/// Threads: callable from any thread. Completions run in the order of their calls, on a thread of the service, or
/// inside the call where the store has nothing to wait for; they may call the store, and may be empty. No method but
/// `value` and `keys` waits for the disk, and these only until the store has been read into memory; of an app group,
/// also where another process may have written to it since. Failure: a store that cannot be read is set aside (renamed)
/// and started afresh; a write that fails (full disk) is lost on disk but still holds in memory. Both are told to the
/// handler of `Defaults::setProblemHandler`.
class DefaultsStore {
public:
    virtual ~DefaultsStore() = default;

    /// The value under the key; absent where there is none.
    [[nodiscard]] virtual Value value(std::string_view key) const noexcept = 0;

    /// Replaces the value under the key, whatever was there, queued elements included; an absent value removes it.
    virtual void set(std::string_view key, Value value) noexcept = 0;

    /// Every key that holds a value, in no particular order.
    [[nodiscard]] virtual std::vector<std::string> keys() const noexcept = 0;

    /// Commits the writes so far. Does not wait: a later reader, in this process or the next, sees all or none of them.
    virtual void synchronize() noexcept = 0;

    /// Adds an element at the end of the array.
    virtual void append(std::string_view key, std::string json) noexcept = 0;

    /// Adds an element beside the array, in flight. `committed` runs once the element survives a kill of the process,
    /// with its id, or with nothing where it could not be written.
    virtual void appendInFlight(std::string_view key, std::string json,
                                std::function<void(std::optional<ElementId>)> committed) noexcept = 0;

    /// Takes all queued elements out at once, oldest first, and keeps them in flight.
    virtual void take(std::string_view key, std::function<void(std::vector<StoredElement>)> taken) noexcept = 0;

    /// How many elements are queued.
    virtual void count(std::string_view key, std::function<void(std::size_t)> counted) noexcept = 0;

    /// Puts an element in flight back, at the end of the array. `requeued` runs when that is committed.
    virtual void requeue(std::string_view key, ElementId id, std::function<void()> requeued) noexcept = 0;

    /// Forgets an element in flight: it has been delivered.
    virtual void finish(std::string_view key, ElementId id) noexcept = 0;

    /// Gives an element in flight up: it can never be delivered. It stays in flight until `reclaim` drops it.
    virtual void giveUp(std::string_view key, ElementId id) noexcept = 0;

    /// To be called once at a launch, before any other operation by element: returns what earlier launches left in
    /// flight to the array and drops what they had given up. Where another living process owns the stores, nothing is
    /// reclaimed, and nobody waits.
    virtual void reclaim(std::string_view key, std::function<void(ReclaimedElements)> reclaimed) noexcept = 0;

    /// Removes the values and all elements of the keys, also those in flight, and from the disk every trace of them, of
    /// whatever was removed or replaced earlier, and of stores that were set aside. Other keys stay. `erased` runs with
    /// the empty text once that is on disk, else with one sentence that says what is left; from memory they are gone
    /// either way.
    virtual void erase(std::vector<std::string> keys, std::function<void(std::string problem)> erased) noexcept = 0;
};

/// Opens the stores.
///
/// Threads: callable from any thread. Opening does not wait for the disk.
/// Ending: destroying the service commits what has been synchronised and drops the rest. Stores that are still held
/// then go on in memory only.
class Defaults {
public:
    virtual ~Defaults() = default;

    /// The application's own store.
    [[nodiscard]] virtual std::shared_ptr<DefaultsStore> standard() noexcept = 0;

    /// A further store of the application's own, told apart by its name (any text). The same name, the same store.
    [[nodiscard]] virtual std::shared_ptr<DefaultsStore> suite(std::string_view name) noexcept = 0;

    /// A store that the application shares with its extensions, which are other processes: reads see what
    /// those have written.
    [[nodiscard]] virtual std::shared_ptr<DefaultsStore> appGroup(std::string_view name) noexcept = 0;

    /// Takes one sentence for every store that was set aside and every write that failed, also those before the call.
    /// Runs on any thread. An empty handler ends it; once that call has returned, the old handler is not running.
    virtual void setProblemHandler(std::function<void(std::string)> handler) noexcept = 0;
};

}  // namespace orbinel::platform

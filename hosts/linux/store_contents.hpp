#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orbinel/platform/defaults.hpp"
#include "orbinel/platform/json.hpp"

namespace orbinel::hosts {

using SharedValue = std::shared_ptr<const Value>;

enum class ElementState { queued = 0, inFlight = 1, givenUp = 2 };

/// One element of an array as it stands in memory and in the file.
struct ElementRow {
    platform::ElementId id = 0;
    std::int64_t position = 0;  // the array's order; two processes may have given the same
    ElementState state = ElementState::queued;
    std::string json;
};

/// What a store holds, in memory: the truth for this process, which the file follows.
///
/// Threads: none of its own; its owner guards it.
class StoreContents {
public:
    struct Reclaimed {
        std::vector<ElementRow> returned;
        std::vector<ElementRow> dropped;
    };

    /// New elements are numbered from the given id on.
    void startNumberingAt(platform::ElementId id) noexcept { nextId_ = id; }

    /// Adds what a file held.
    void load(std::string key, SharedValue value);
    void load(const std::string& key, ElementRow row);

    /// The value under the key; null where there is none, or where the key holds elements.
    [[nodiscard]] SharedValue value(std::string_view key) const;

    /// The queued elements of the key, oldest first.
    [[nodiscard]] std::vector<std::string> queuedJson(std::string_view key) const;

    [[nodiscard]] std::vector<std::string> keys() const;

    /// Whether the key holds neither a value nor a queued element.
    [[nodiscard]] bool isEmpty(std::string_view key) const {
        return values_.find(key) == values_.end() && count(key) == 0;
    }

    /// Null removes.
    void set(std::string_view key, SharedValue value);

    /// Removes the value and all elements of the key.
    void erase(std::string_view key);

    /// Turns a value under the key into elements: those of an array, none for any other value. The new rows; nothing
    /// where there was no value.
    std::optional<std::vector<ElementRow>> turnIntoElements(std::string_view key, const platform::Json& json);

    ElementRow append(std::string_view key, std::string json, ElementState state);
    std::vector<ElementRow> take(std::string_view key);
    [[nodiscard]] std::size_t count(std::string_view key) const;

    /// The row as it is now; nothing where no such element is in flight.
    std::optional<ElementRow> requeue(std::string_view key, platform::ElementId id);
    bool finish(std::string_view key, platform::ElementId id);
    bool giveUp(std::string_view key, platform::ElementId id);
    Reclaimed reclaim(std::string_view key);

private:
    using Place = std::pair<std::int64_t, platform::ElementId>;  // position, then id

    struct ElementArray {
        std::map<Place, ElementRow> queued;                // in order
        std::map<platform::ElementId, ElementRow> beside;  // in flight or given up
    };

    static Place placeOf(const ElementRow& row) { return {row.position, row.id}; }
    [[nodiscard]] ElementArray& arrayOf(std::string_view key);
    [[nodiscard]] const ElementArray* findArray(std::string_view key) const;
    [[nodiscard]] ElementRow* findBeside(std::string_view key, platform::ElementId id);
    void dropIfEmpty(std::string_view key);

    std::map<std::string, SharedValue, std::less<>> values_;
    std::map<std::string, ElementArray, std::less<>> arrays_;
    platform::ElementId nextId_ = 1;
    std::int64_t firstPosition_ = 0;
    std::int64_t lastPosition_ = 0;
};

}  // namespace orbinel::hosts

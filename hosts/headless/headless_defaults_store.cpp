#include "hosts/headless/headless_defaults_store.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "hosts/common/callable.hpp"
#include "hosts/common/stored_json.hpp"

namespace orbinel::headless {

namespace {

using platform::ElementId;
using platform::ReclaimedElements;
using platform::StoredElement;

template <typename Map>
void copyEntry(const Map& from, Map& to, const std::string& key) {
    const auto found = from.find(key);
    if (found == from.end()) {
        to.erase(key);
    } else {
        to.insert_or_assign(key, found->second);
    }
}

}  // namespace

HeadlessDefaultsStore::HeadlessDefaultsStore(std::shared_ptr<platform::Json> json) : json_(std::move(json)) {}

void HeadlessDefaultsStore::dropUnsynchronised() {
    const MutexLock lock(mutex_);
    for (const auto& key : uncommitted_) copyEntry(committed_, current_, key);
    uncommitted_.clear();
}

Value HeadlessDefaultsStore::value(std::string_view key) const noexcept {
    auto content = copyOf(key);
    if (!content) return {};
    if (auto* value = std::get_if<Value>(&*content)) return std::move(*value);
    Array array;
    for (const auto& element : *std::get<std::shared_ptr<Elements>>(*content)) {
        array.push_back(hosts::parsedOrText(element.json, *json_));
    }
    return array;
}

void HeadlessDefaultsStore::set(std::string_view key, Value value) noexcept {
    value = hosts::withoutUnstorable(std::move(value));
    const MutexLock lock(mutex_);
    uncommitted_.emplace(key);
    if (!value.isAbsent()) {
        current_.insert_or_assign(std::string(key), std::move(value));
    } else if (const auto found = current_.find(key); found != current_.end()) {
        current_.erase(found);
    }
}

std::vector<std::string> HeadlessDefaultsStore::keys() const noexcept {
    const MutexLock lock(mutex_);
    std::vector<std::string> keys;
    for (const auto& [key, content] : current_) keys.push_back(key);
    return keys;
}

void HeadlessDefaultsStore::synchronize() noexcept {
    const MutexLock lock(mutex_);
    for (const auto& key : uncommitted_) copyEntry(current_, committed_, key);
    uncommitted_.clear();
}

void HeadlessDefaultsStore::append(std::string_view key, std::string json) noexcept {
    const MutexLock lock(mutex_);
    elementsOf(key).push_back(numbered(std::move(json)));
}

void HeadlessDefaultsStore::appendInFlight(std::string_view key, std::string json,
                                           std::function<void(std::optional<ElementId>)> committed) noexcept {
    const auto id = [&] {
        const MutexLock lock(mutex_);
        if (holdsPlainValue(key)) static_cast<void>(takeElements(key));
        auto element = numbered(std::move(json));
        const auto number = element.id;
        inFlight_[std::string(key)].push_back({std::move(element)});
        return number;
    }();
    hosts::callable(std::move(committed))(id);
}

void HeadlessDefaultsStore::take(std::string_view key, std::function<void(std::vector<StoredElement>)> taken) noexcept {
    hosts::callable(std::move(taken))(takeQueued(key));
}

void HeadlessDefaultsStore::count(std::string_view key, std::function<void(std::size_t)> counted) noexcept {
    const auto size = [&]() -> std::size_t {
        const MutexLock lock(mutex_);
        return isArray(key) ? elementsOf(key).size() : 0;
    }();
    hosts::callable(std::move(counted))(size);
}

void HeadlessDefaultsStore::requeue(std::string_view key, ElementId id, std::function<void()> requeued) noexcept {
    {
        const MutexLock lock(mutex_);
        if (!holdsPlainValue(key)) {
            if (auto found = extractInFlight(key, id)) elementsOf(key).push_back(std::move(found->element));
        }
    }
    hosts::callable(std::move(requeued))();
}

void HeadlessDefaultsStore::finish(std::string_view key, ElementId id) noexcept {
    const MutexLock lock(mutex_);
    static_cast<void>(extractInFlight(key, id));
}

void HeadlessDefaultsStore::giveUp(std::string_view key, ElementId id) noexcept {
    const MutexLock lock(mutex_);
    const auto list = inFlight_.find(key);
    if (list == inFlight_.end()) return;
    for (auto& one : list->second) one.givenUp |= one.element.id == id;
}

void HeadlessDefaultsStore::reclaim(std::string_view key, std::function<void(ReclaimedElements)> reclaimed) noexcept {
    hosts::callable(std::move(reclaimed))(reclaimNow(key));
}

void HeadlessDefaultsStore::erase(std::vector<std::string> keys, std::function<void(std::string)> erased) noexcept {
    {
        const MutexLock lock(mutex_);
        for (const auto& key : keys) {
            current_.erase(key);
            committed_.erase(key);
            uncommitted_.erase(key);
            inFlight_.erase(key);
        }
    }
    hosts::callable(std::move(erased))({});
}

std::optional<HeadlessDefaultsStore::Content> HeadlessDefaultsStore::copyOf(std::string_view key) const {
    const MutexLock lock(mutex_);
    const auto found = current_.find(key);
    if (found == current_.end()) return std::nullopt;
    const auto* elements = std::get_if<std::shared_ptr<Elements>>(&found->second);
    return elements != nullptr ? Content(std::make_shared<Elements>(**elements)) : found->second;
}

StoredElement HeadlessDefaultsStore::numbered(std::string json) { return {++lastId_, std::move(json)}; }

bool HeadlessDefaultsStore::isArray(std::string_view key) const {
    const auto found = current_.find(key);
    if (found == current_.end()) return false;
    const auto* value = std::get_if<Value>(&found->second);
    return value == nullptr || value->ifArray() != nullptr;
}

bool HeadlessDefaultsStore::holdsPlainValue(std::string_view key) const {
    return current_.contains(key) && !isArray(key);
}

/// The queued elements, durable from here on; made of what is there where it is an array, else empty.
HeadlessDefaultsStore::Elements& HeadlessDefaultsStore::elementsOf(std::string_view key) {
    const auto place = current_.try_emplace(std::string(key)).first;
    if (const auto* value = std::get_if<Value>(&place->second)) {
        place->second = std::make_shared<Elements>(elementsIn(*value));
        committed_.insert_or_assign(place->first, place->second);
        uncommitted_.erase(place->first);
    }
    return *std::get<std::shared_ptr<Elements>>(place->second);
}

HeadlessDefaultsStore::Elements HeadlessDefaultsStore::elementsIn(const Value& value) {
    Elements elements;
    if (const auto* array = value.ifArray()) {
        for (const auto& element : *array) {
            if (auto json = json_->serialise(element, platform::JsonStyle::compact)) {
                elements.push_back(numbered(std::move(*json)));
            }
        }
    }
    return elements;
}

HeadlessDefaultsStore::Elements HeadlessDefaultsStore::takeQueued(std::string_view key) {
    const MutexLock lock(mutex_);
    if (!isArray(key)) return {};
    auto taken = takeElements(key);
    auto& inFlight = inFlight_[std::string(key)];
    for (const auto& element : taken) inFlight.push_back({element});
    return taken;
}

/// The queued elements; nothing is left under the key.
HeadlessDefaultsStore::Elements HeadlessDefaultsStore::takeElements(std::string_view key) {
    auto taken = std::move(elementsOf(key));
    current_.erase(std::string(key));
    committed_.erase(std::string(key));
    return taken;
}

ReclaimedElements HeadlessDefaultsStore::reclaimNow(std::string_view key) {
    const MutexLock lock(mutex_);
    ReclaimedElements result;
    if (holdsPlainValue(key)) return result;
    Elements returned;
    for (auto& one : std::exchange(inFlight_[std::string(key)], {})) {
        if (one.givenUp) {
            result.dropped.push_back(std::move(one.element.json));
        } else {
            returned.push_back(std::move(one.element));
        }
    }
    result.returned = returned.size();
    if (returned.empty()) return result;
    auto& queued = elementsOf(key);
    queued.insert(queued.begin(), std::make_move_iterator(returned.begin()), std::make_move_iterator(returned.end()));
    return result;
}

std::optional<HeadlessDefaultsStore::InFlight> HeadlessDefaultsStore::extractInFlight(std::string_view key,
                                                                                      ElementId id) {
    const auto list = inFlight_.find(key);
    if (list == inFlight_.end()) return std::nullopt;
    auto& elements = list->second;
    const auto found =
        std::find_if(elements.begin(), elements.end(), [&](const InFlight& one) { return one.element.id == id; });
    if (found == elements.end()) return std::nullopt;
    auto extracted = std::move(*found);
    elements.erase(found);
    return extracted;
}

}  // namespace orbinel::headless

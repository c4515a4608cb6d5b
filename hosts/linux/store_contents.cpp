#include "hosts/linux/store_contents.hpp"

#include <algorithm>
#include <utility>

namespace orbinel::hosts {

void StoreContents::load(std::string key, SharedValue value) { values_[std::move(key)] = std::move(value); }

void StoreContents::load(const std::string& key, ElementRow row) {
    firstPosition_ = std::min(firstPosition_, row.position);
    lastPosition_ = std::max(lastPosition_, row.position);
    auto& array = arrays_[key];
    if (row.state == ElementState::queued) {
        array.queued.emplace(placeOf(row), std::move(row));
    } else {
        array.beside.emplace(row.id, std::move(row));
    }
}

SharedValue StoreContents::value(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? nullptr : found->second;
}

std::vector<std::string> StoreContents::queuedJson(std::string_view key) const {
    std::vector<std::string> texts;
    if (const auto* array = findArray(key)) {
        texts.reserve(array->queued.size());
        for (const auto& [place, row] : array->queued) texts.push_back(row.json);
    }
    return texts;
}

std::vector<std::string> StoreContents::keys() const {
    std::vector<std::string> keys;
    for (const auto& [key, value] : values_) keys.push_back(key);
    for (const auto& [key, array] : arrays_) {
        if (!array.queued.empty()) keys.push_back(key);
    }
    return keys;
}

void StoreContents::set(std::string_view key, SharedValue value) {
    if (const auto array = arrays_.find(key); array != arrays_.end()) {
        array->second.queued.clear();
        dropIfEmpty(key);
    }
    if (value) {
        values_.insert_or_assign(std::string(key), std::move(value));
    } else if (const auto found = values_.find(key); found != values_.end()) {
        values_.erase(found);
    }
}

void StoreContents::erase(std::string_view key) {
    if (const auto value = values_.find(key); value != values_.end()) values_.erase(value);
    if (const auto array = arrays_.find(key); array != arrays_.end()) arrays_.erase(array);
}

std::optional<std::vector<ElementRow>> StoreContents::turnIntoElements(std::string_view key,
                                                                       const platform::Json& json) {
    const auto found = values_.find(key);
    if (found == values_.end()) return std::nullopt;
    const auto value = std::move(found->second);
    values_.erase(found);

    std::vector<ElementRow> rows;
    const auto* array = value->ifArray();
    if (array == nullptr) return rows;
    for (const auto& element : *array) {
        auto text = json.serialise(element, platform::JsonStyle::compact);
        if (text) rows.push_back(append(key, std::move(*text), ElementState::queued));
    }
    return rows;
}

ElementRow StoreContents::append(std::string_view key, std::string json, ElementState state) {
    ElementRow row{nextId_++, ++lastPosition_, state, std::move(json)};
    auto& array = arrayOf(key);
    if (state == ElementState::queued) {
        array.queued.emplace(placeOf(row), row);
    } else {
        array.beside.emplace(row.id, row);
    }
    return row;
}

std::vector<ElementRow> StoreContents::take(std::string_view key) {
    std::vector<ElementRow> taken;
    const auto found = arrays_.find(key);
    if (found == arrays_.end()) return taken;
    auto queued = std::exchange(found->second.queued, {});
    taken.reserve(queued.size());
    for (auto& [place, row] : queued) {
        row.state = ElementState::inFlight;
        found->second.beside.emplace(row.id, row);
        taken.push_back(std::move(row));
    }
    return taken;
}

std::size_t StoreContents::count(std::string_view key) const {
    const auto* array = findArray(key);
    return array != nullptr ? array->queued.size() : 0;
}

std::optional<ElementRow> StoreContents::requeue(std::string_view key, platform::ElementId id) {
    const auto* beside = findBeside(key, id);
    if (beside == nullptr || beside->state != ElementState::inFlight) return std::nullopt;
    auto& array = arrayOf(key);
    auto row = std::move(array.beside.extract(id).mapped());
    row.state = ElementState::queued;
    row.position = ++lastPosition_;
    array.queued.emplace(placeOf(row), row);
    return row;
}

bool StoreContents::finish(std::string_view key, platform::ElementId id) {
    if (findBeside(key, id) == nullptr) return false;
    arrayOf(key).beside.erase(id);
    dropIfEmpty(key);
    return true;
}

bool StoreContents::giveUp(std::string_view key, platform::ElementId id) {
    auto* beside = findBeside(key, id);
    if (beside == nullptr) return false;
    beside->state = ElementState::givenUp;
    return true;
}

StoreContents::Reclaimed StoreContents::reclaim(std::string_view key) {
    Reclaimed reclaimed;
    const auto found = arrays_.find(key);
    if (found == arrays_.end()) return reclaimed;
    for (auto& [id, row] : std::exchange(found->second.beside, {})) {
        (row.state == ElementState::givenUp ? reclaimed.dropped : reclaimed.returned).push_back(row);
    }
    const auto byPosition = [](const ElementRow& left, const ElementRow& right) {
        return left.position < right.position;
    };
    std::sort(reclaimed.returned.begin(), reclaimed.returned.end(), byPosition);
    std::sort(reclaimed.dropped.begin(), reclaimed.dropped.end(), byPosition);

    // Before all others, in their old order.
    firstPosition_ -= static_cast<std::int64_t>(reclaimed.returned.size());
    auto position = firstPosition_;
    for (auto& row : reclaimed.returned) {
        row.state = ElementState::queued;
        row.position = position++;
        found->second.queued.emplace(placeOf(row), row);
    }
    dropIfEmpty(key);
    return reclaimed;
}

StoreContents::ElementArray& StoreContents::arrayOf(std::string_view key) {
    const auto found = arrays_.find(key);
    return found != arrays_.end() ? found->second : arrays_[std::string(key)];
}

const StoreContents::ElementArray* StoreContents::findArray(std::string_view key) const {
    const auto found = arrays_.find(key);
    return found != arrays_.end() ? &found->second : nullptr;
}

ElementRow* StoreContents::findBeside(std::string_view key, platform::ElementId id) {
    const auto array = arrays_.find(key);
    if (array == arrays_.end()) return nullptr;
    const auto found = array->second.beside.find(id);
    return found != array->second.beside.end() ? &found->second : nullptr;
}

void StoreContents::dropIfEmpty(std::string_view key) {
    const auto found = arrays_.find(key);
    if (found != arrays_.end() && found->second.queued.empty() && found->second.beside.empty()) arrays_.erase(found);
}

}  // namespace orbinel::hosts

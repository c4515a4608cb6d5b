#include "personalisation/content_cache.hpp"

#include <cstddef>
#include <utility>

#include "base/number_reading.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

/// More names than any application reads; one that makes names up starts over.
constexpr std::size_t mostRemembered = 4096;

}  // namespace

ContentRecord::ContentRecord(Dictionary record)
    : stored(std::move(record)),
      newValue(stored["new_value"]),
      contentId(intValue(stored["content_id"]).value_or(0)),
      variantId(intValue(stored["variant_id"]).value_or(0)) {}

ContentCache::ContentCache(platform::Defaults& defaults, const platform::Json& json)
    : defaults_(defaults), json_(json) {}

std::shared_ptr<platform::DefaultsStore> ContentCache::store() const {
    const MutexLock lock(storeMutex_);
    if (store_ == nullptr) store_ = defaults_.suite(keys::contentSuite);
    return store_;
}

bool ContentCache::canHold(std::string_view name) noexcept { return name != keys::testContents; }

std::shared_ptr<const ContentRecord> ContentCache::find(std::string_view name) {
    std::uint64_t readAt = 0;
    {
        const MutexLock lock(mutex_);
        if (const auto known = remembered_.find(name); known != remembered_.end()) return known->second->record;
        readAt = changes_;
    }
    auto record = readStored(name);
    remember(name, record, readAt);
    return record;
}

std::shared_ptr<const ContentRecord> ContentCache::readStored(std::string_view name) const {
    if (!canHold(name)) return nullptr;
    auto value = store()->value(name);
    auto* record = value.ifDictionary();
    return record != nullptr ? std::make_shared<const ContentRecord>(std::move(*record)) : nullptr;
}

void ContentCache::remember(std::string_view name, std::shared_ptr<const ContentRecord> record, std::uint64_t readAt) {
    auto remembered = std::make_unique<const Remembered>(Remembered{std::string(name), std::move(record)});
    const MutexLock lock(mutex_);
    if (changes_ != readAt) return;
    if (remembered_.size() >= mostRemembered) remembered_.clear();
    const std::string_view key = remembered->name;
    remembered_.try_emplace(key, std::move(remembered));
}

// Forgotten after the store has changed, rather than replaced: of two writers, what the store holds counts.
void ContentCache::forget(std::string_view name) {
    const MutexLock lock(mutex_);
    ++changes_;
    remembered_.erase(name);
}

void ContentCache::insert(const std::string& name, Dictionary record) {
    store()->set(name, std::move(record));
    store()->synchronize();
    forget(name);
}

void ContentCache::remove(const Array& names) {
    for (const auto& element : names) {
        const auto* name = element.ifString();
        if (name == nullptr || !canHold(*name)) continue;
        store()->set(*name, Value());
        forget(*name);
    }
    store()->synchronize();
}

void ContentCache::addTestVariable(const std::string& name) {
    if (auto element = json_.serialise(Value(name), platform::JsonStyle::compact)) {
        store()->append(keys::testContents, std::move(*element));
    }
}

void ContentCache::removeTestVariables() {
    const auto names = store()->value(keys::testContents);
    if (names.isAbsent()) return;
    if (const auto* list = names.ifArray()) remove(*list);
    store()->set(keys::testContents, Value());
    store()->synchronize();
}

}  // namespace orbinel

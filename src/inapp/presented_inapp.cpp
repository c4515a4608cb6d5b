#include "inapp/presented_inapp.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "base/value_content.hpp"
#include "base/value_text.hpp"
#include "base/value_weight.hpp"
#include "base/whole_number.hpp"

namespace orbinel {

void PresentedInapp::present(Record record) {
    const MutexLock lock(mutex_);
    activeInapp_.swap(record);  // the earlier one is released without the lock
    kept_ = 0;
}

void PresentedInapp::presentWhereNone(Record record) {
    const MutexLock lock(mutex_);
    if (activeInapp_ == nullptr) activeInapp_.swap(record);
}

void PresentedInapp::clear() {
    Record gone;
    Array clicks;
    const MutexLock lock(mutex_);
    activeInapp_.swap(gone);
    inappClickLog_.swap(clicks);
    shouldAddInappLog_ = false;
}

void PresentedInapp::clear(const Record& record) {
    Array clicks;
    const MutexLock lock(mutex_);
    if (activeInapp_ != record) return;
    activeInapp_ = nullptr;  // the caller's reference keeps the record
    inappClickLog_.swap(clicks);
    shouldAddInappLog_ = false;
}

PresentedInapp::Record PresentedInapp::activeInapp() const {
    const MutexLock lock(mutex_);
    return activeInapp_;
}

bool PresentedInapp::mayKeep(const Value& sent) {
    constexpr std::size_t most = std::size_t{1} << 20U;
    const auto bytes = weightOf(sent);
    const MutexLock lock(mutex_);
    if (bytes > most - std::min(kept_, most)) return false;
    kept_ += bytes;
    return true;
}

Dictionary PresentedInapp::content() const {
    const auto record = activeInapp();
    const auto* content = record != nullptr ? (*record)["content"].ifDictionary() : nullptr;
    return content != nullptr ? *content : Dictionary();
}

void PresentedInapp::setShouldAddInappLog(bool should) {
    const MutexLock lock(mutex_);
    shouldAddInappLog_ = should;
}

bool PresentedInapp::shouldAddInappLog() const {
    const MutexLock lock(mutex_);
    return shouldAddInappLog_;
}

bool PresentedInapp::takeShouldAddInappLog() {
    const MutexLock lock(mutex_);
    return std::exchange(shouldAddInappLog_, false);
}

bool PresentedInapp::addClick(Dictionary click) {
    constexpr std::size_t mostClicks = 1000;  // a page may go on for ever
    const MutexLock lock(mutex_);
    if (inappClickLog_.size() >= mostClicks) return false;
    inappClickLog_.emplace_back(std::move(click));
    return true;
}

Array PresentedInapp::takeClicks() {
    Array taken;
    const MutexLock lock(mutex_);
    taken.swap(inappClickLog_);
    return taken;
}

void PresentedInapp::clearClicks() { (void)takeClicks(); }

std::string inappFieldText(const Dictionary& record, std::string_view field) {
    const auto& value = record[field];
    if (const auto* text = value.ifString()) return *text;
    return isPresent(value) ? textOf(value) : std::string();
}

Value inappFieldNumber(const Dictionary& record, std::string_view field) {
    const auto number = wholeNumberOf(record[field]).value_or(0);
    return std::in_range<std::int32_t>(number) ? Value(static_cast<std::int32_t>(number)) : Value(number);
}

Dictionary inappIdentity(const Dictionary* record) {
    Dictionary identity;
    for (const auto* field : std::array{"inapp_id", "variant_id"}) {
        identity.set(field, record != nullptr ? inappFieldText(*record, field) : std::string());
    }
    return identity;
}

}  // namespace orbinel

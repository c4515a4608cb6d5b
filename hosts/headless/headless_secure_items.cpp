#include "orbinel/headless/headless_secure_items.hpp"

#include <map>
#include <utility>

#include "base/mutex.hpp"

namespace orbinel::headless {

struct HeadlessSecureItems::Items {
    using Key = std::pair<std::string, std::string>;  // service, account

    Mutex mutex;
    std::map<Key, std::string> data ORBINEL_GUARDED_BY(mutex);
};

HeadlessSecureItems::HeadlessSecureItems() : items_(std::make_unique<Items>()) {}
HeadlessSecureItems::~HeadlessSecureItems() = default;

std::optional<std::string> HeadlessSecureItems::find(std::string_view service,
                                                     std::string_view account) const noexcept {
    const MutexLock lock(items_->mutex);
    const auto found = items_->data.find(Items::Key{service, account});
    return found == items_->data.end() ? std::nullopt : std::optional(found->second);
}

bool HeadlessSecureItems::store(std::string_view service, std::string_view account, std::string_view data) noexcept {
    const MutexLock lock(items_->mutex);
    items_->data.insert_or_assign(Items::Key{service, account}, std::string(data));
    return true;
}

void HeadlessSecureItems::remove(std::string_view service, std::string_view account) noexcept {
    const MutexLock lock(items_->mutex);
    items_->data.erase(Items::Key{service, account});
}

}  // namespace orbinel::headless

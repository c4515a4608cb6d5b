#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "base/mutex.hpp"
#include "platform/forwarding_secure_items.hpp"

namespace orbinel::tool {

/// Remembers which items were asked for or stored, since a secure store cannot be listed.
class RememberingSecureItems final : public platform::ForwardingSecureItems {
public:
    using ForwardingSecureItems::ForwardingSecureItems;

    std::optional<std::string> find(std::string_view service, std::string_view account) const noexcept override {
        remember(service, account);
        return target_->find(service, account);
    }
    bool store(std::string_view service, std::string_view account, std::string_view data) noexcept override {
        remember(service, account);
        return target_->store(service, account, data);
    }

    /// The remembered items that are there: by "service", or "service/account" where they differ.
    [[nodiscard]] std::map<std::string, std::string> content() const {
        const auto names = [this] {
            const MutexLock lock(mutex_);
            return names_;
        }();
        std::map<std::string, std::string> content;
        for (const auto& [service, account] : names) {
            auto data = target_->find(service, account);
            if (data) content.emplace(service == account ? service : service + '/' + account, std::move(*data));
        }
        return content;
    }

private:
    void remember(std::string_view service, std::string_view account) const {
        const MutexLock lock(mutex_);
        names_.emplace(service, account);
    }

    mutable Mutex mutex_;
    mutable std::set<std::pair<std::string, std::string>> names_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel::tool

#include "push/payload_delivery.hpp"

#include <algorithm>
#include <array>

#include "base/guard.hpp"

namespace orbinel {

namespace {

namespace operations = platform::delegate_operations;

constexpr std::array newestFirst{operations::didReceiveRemoteNotificationFetching,
                                 operations::didReceiveRemoteNotification};

}  // namespace

void PayloadDelivery::setDictionaryToDelegate(const Dictionary& payload) noexcept {
    guarded(reports_, "-[OrbinelInapp setDictionaryToDelegate:]", [&] {
        const auto delegate = application_.delegate();
        if (delegate == nullptr) return;
        platform::DelegateArguments arguments;
        arguments.userInfo = payload;
        const auto operation = operationOf(*delegate);
        if (!operation.empty()) delegate->perform(operation, arguments);
    });
}

/// Empty where there is none.
std::string_view PayloadDelivery::operationOf(const platform::Delegate& delegate) const {
    const auto firstWith = [](auto&& isMeant) {
        const auto* const found = std::find_if(newestFirst.begin(), newestFirst.end(), isMeant);
        return found != newestFirst.end() ? *found : std::string_view();
    };
    const auto own = firstWith([&](auto operation) { return interception_.isOwn(*delegate.type(), operation); });
    return !own.empty() ? own : firstWith([&](auto operation) { return delegate.respondsTo(operation); });
}

}  // namespace orbinel

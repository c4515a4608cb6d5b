#include "push/payload_delivery.hpp"

#include "base/guard.hpp"
#include "orbinel/platform/delegate.hpp"

namespace orbinel {

void PayloadDelivery::setDictionaryToDelegate(const Dictionary& payload) noexcept {
    guarded(reports_, "-[OrbinelInapp setDictionaryToDelegate:]", [&] {
        namespace operations = platform::delegate_operations;
        const auto delegate = application_.delegate();
        if (delegate == nullptr) return;
        platform::DelegateArguments arguments;
        arguments.userInfo = payload;
        for (const auto operation :
             {operations::didReceiveRemoteNotificationFetching, operations::didReceiveRemoteNotification}) {
            if (!delegate->respondsTo(operation)) continue;
            delegate->perform(operation, arguments);
            return;
        }
    });
}

}  // namespace orbinel

#pragma once

#include <string_view>

#include "base/reports.hpp"
#include "inapp/button_clicks.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/delegate.hpp"
#include "orbinel/value.hpp"
#include "push/interception.hpp"

namespace orbinel {

/// Hands what a native button of a message carries to the application's delegate, as if it were a push: the library
/// stands in front of that operation and handles it, too.
///
/// Threads: main.
class PayloadDelivery final : public RemoteNotificationDelivery {
public:
    struct Needs {
        Reports& reports;
        const Interception& interception;
        platform::Application& application;
    };

    explicit PayloadDelivery(const Needs& needs)
        : reports_(needs.reports), interception_(needs.interception), application_(needs.application) {}

    /// By the newest operation that the application itself implements; where it implements none, the library alone
    /// handles the payload. Nothing happens where the delegate receives no pushes. Nobody waits for the delegate's
    /// completion.
    void setDictionaryToDelegate(const Dictionary& payload) noexcept override;

private:
    [[nodiscard]] std::string_view operationOf(const platform::Delegate& delegate) const;

    Reports& reports_;
    const Interception& interception_;
    platform::Application& application_;
};

}  // namespace orbinel

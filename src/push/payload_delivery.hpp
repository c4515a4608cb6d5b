#pragma once

#include "base/reports.hpp"
#include "inapp/button_clicks.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// Hands what a native button of a message carries to the application's delegate, as if it were a push: the library
/// stands in front of that operation and handles it, too.
///
/// Threads: main.
class PayloadDelivery final : public RemoteNotificationDelivery {
public:
    struct Needs {
        Reports& reports;
        platform::Application& application;
    };

    explicit PayloadDelivery(const Needs& needs) : reports_(needs.reports), application_(needs.application) {}

    /// Nothing happens where the delegate receives no pushes. Nobody waits for the delegate's completion.
    void setDictionaryToDelegate(const Dictionary& payload) noexcept override;

private:
    Reports& reports_;
    platform::Application& application_;
};

}  // namespace orbinel

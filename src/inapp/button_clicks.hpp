#pragma once

#include <string>

#include "base/late.hpp"
#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "inapp/application_callback.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/native_actions.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "session/helper.hpp"
#include "user/user_attributes.hpp"

namespace orbinel {

/// The application's delegate, as far as a button hands it a payload.
class RemoteNotificationDelivery {
public:
    virtual ~RemoteNotificationDelivery() = default;

    /// Hands the payload to the delegate's operation for remote notifications, as if it were a push.
    virtual void setDictionaryToDelegate(const Dictionary& payload) noexcept = 0;
};

/// What is done when a button of a message is pressed: the message is logged and, where it was not merely clicked,
/// removed; a native button then acts, tells the application and sets attributes of the user.
///
/// Threads: main.
class ButtonClicks final : public InappButtonClicks {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelUserInternal& attributes;
        NativeActions& nativeActions;
        UrlOpening& urls;
        const Lifetime& lifetime;
        const platform::Json& json;
        platform::Scheduler& scheduler;
    };

    explicit ButtonClicks(const Needs& needs);

    Late<InappScreen> screen;
    Late<InappLogging> logging;
    Late<RemoteNotificationDelivery> remoteNotifications;

    void inappButtonClicked(const InappButton& button) noexcept override;

    /// The application's callback: {"type": 1, "data": the payload of the native button}. Any thread.
    void setInappButtonClickCallback(ApplicationCallback::Action callback) noexcept;

private:
    void close(const InappButton& button);
    void performNativeAction(const InappButton& button);
    void deliverPayload(const std::string& text);
    void setAttributes(const std::string& text);
    [[nodiscard]] std::optional<Dictionary> convertStringToDictionary(const std::string& text) const;

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelUserInternal& attributes_;
    NativeActions& nativeActions_;
    UrlOpening& urls_;
    const platform::Json& json_;
    ApplicationCallback callback_;
};

}  // namespace orbinel

#pragma once

#include <array>
#include <string_view>

#include "base/late.hpp"
#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "inapp/application_callback.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/native_actions.hpp"
#include "inapp/presented_inapp.hpp"
#include "inapp/shake_detector.hpp"
#include "inapp/template_answers.hpp"
#include "inapp/template_attributes.hpp"
#include "inapp/template_events.hpp"
#include "inapp/template_messages.hpp"
#include "inapp/template_products.hpp"
#include "inapp/url_opener.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/notification_centre.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// Carries out what a page asks for: every key of its object is the name of an action, the value its parameters. Keys
/// that name none are passed over, and so is an action whose value is null or of a kind that it cannot take.
///
/// Actions run in the order of the table, whatever the order of the keys: what a page reports comes before what removes
/// it. Threads: main, where nothing else is said.
class OrbinelTemplateStore {
public:
    struct Needs {
        Reports& reports;
        TemplateEvents& events;
        TemplateAttributes& attributes;
        TemplateProducts& products;
        TemplateAnswers& answers;
        TemplateMessages& messages;
        NativeActions& nativeActions;
        ShakeDetector& shakes;
        UrlOpener& urls;
        PresentedInapp& presented;
        const Lifetime& lifetime;
        const platform::Json& json;
        platform::Scheduler& scheduler;
        platform::NotificationCentre& notificationCentre;
    };

    explicit OrbinelTemplateStore(const Needs& needs);

    Late<InappScreen> screen;
    Late<InappLogging> logging;

    void processTemplateStoreURL(const Dictionary& actions) noexcept;

    /// The application's callback, which is told of purchases (2), of what goes into the cart (3) and of the page's own
    /// messages (4): {"type", "data"}. Any thread.
    void setTemplateStoreCallback(ApplicationCallback::Action callback) noexcept;

    /// Tells the application, on the next turn of the main queue. Any thread.
    void callPartnerDelegate(std::int32_t type, Value data) noexcept;

private:
    enum class Removal { logged, silent };

    struct Request {
        const Value& value;
        const Dictionary& actions;  // the object that the value stands in
    };
    struct Action {
        std::string_view key;
        void (OrbinelTemplateStore::*perform)(const Request&);
    };
    static const std::array<Action, 20> actions;

    void sendClickData(const Request& request);
    void performNative(const Request& request);
    void askForReview(const Request& request);
    void copy(const Request& request);
    void setDefaultAttributes(const Request& request);
    void tagEvents(const Request& request);
    void addLead(const Request& request);
    void addSurvey(const Request& request);
    void callPartner(const Request& request);
    void purchase(const Request& request);
    void addToCart(const Request& request);
    void beginInput(const Request& request);
    void dismissSilently(const Request& request);
    void dismiss(const Request& request);
    void sendDeviceAttributes(const Request& request);
    void triggerHapticFeedback(const Request& request);
    void adjustTemplate(const Request& request);
    void openInternally(const Request& request);
    void openExternally(const Request& request);
    void initShakeDetector(const Request& request);

    [[nodiscard]] bool mayKeep(const Value& sent);
    void configureInappRemoval(const Dictionary& parameters, Removal removal) noexcept;
    void onKeyboardHide() noexcept;

    Reports& reports_;
    TemplateEvents& events_;
    TemplateAttributes& attributes_;
    TemplateProducts& products_;
    TemplateAnswers& answers_;
    TemplateMessages& messages_;
    NativeActions& nativeActions_;
    ShakeDetector& shakes_;
    UrlOpener& urls_;
    PresentedInapp& presented_;
    const Lifetime& lifetime_;
    const platform::Json& json_;
    platform::NotificationCentre& notificationCentre_;

    ApplicationCallback callback_;
    platform::Ticket keyboardObservation_;  // while a text field of the page is edited
};

}  // namespace orbinel

#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "base/entrance.hpp"
#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "commerce/cart_reminder.hpp"
#include "commerce/commerce_events.hpp"
#include "commerce/page_visits.hpp"
#include "commerce/product_access.hpp"
#include "commerce/product_creation.hpp"
#include "commerce/wishlist.hpp"
#include "core/crash_handler.hpp"
#include "core/initialisation.hpp"
#include "core/lifecycle.hpp"
#include "core/session_events.hpp"
#include "diagnostics/logger.hpp"
#include "events/event_budget.hpp"
#include "events/event_recorder.hpp"
#include "events/validation.hpp"
#include "inapp/button_clicks.hpp"
#include "inapp/campaign_selection.hpp"
#include "inapp/campaign_store.hpp"
#include "inapp/frequency_cap.hpp"
#include "inapp/inapp_logs.hpp"
#include "inapp/native_actions.hpp"
#include "inapp/presentation.hpp"
#include "inapp/presented_inapp.hpp"
#include "inapp/shake_detector.hpp"
#include "inapp/template_answers.hpp"
#include "inapp/template_attributes.hpp"
#include "inapp/template_bridge.hpp"
#include "inapp/template_events.hpp"
#include "inapp/template_messages.hpp"
#include "inapp/template_products.hpp"
#include "inapp/template_store.hpp"
#include "inapp/url_opener.hpp"
#include "orbinel/library_part.hpp"
#include "orbinel/platform/services.hpp"
#include "personalisation/content_optimizer.hpp"
#include "personalisation/recommendation_logger.hpp"
#include "personalisation/recommended_ids.hpp"
#include "personalisation/smart_recommendations.hpp"
#include "privacy/collection_switches.hpp"
#include "privacy/consent.hpp"
#include "push/carousel_link.hpp"
#include "push/configurations.hpp"
#include "push/device_token.hpp"
#include "push/interception.hpp"
#include "push/payload_delivery.hpp"
#include "push/push.hpp"
#include "push/push_links.hpp"
#include "push/push_log.hpp"
#include "push/push_permission.hpp"
#include "push/replaced_operations.hpp"
#include "push/universal_links.hpp"
#include "session/encryptor.hpp"
#include "session/endpoints.hpp"
#include "session/helper.hpp"
#include "session/offline_queue.hpp"
#include "session/request_sender.hpp"
#include "session/session.hpp"
#include "session/session_start.hpp"
#include "session/session_stop.hpp"
#include "tools/auto_integration.hpp"
#include "tools/integration_wizard.hpp"
#include "tools/message_center.hpp"
#include "tools/test_devices.hpp"
#include "tools/tool_links.hpp"
#include "user/device_attributes.hpp"
#include "user/id_listeners.hpp"
#include "user/identity.hpp"
#include "user/login.hpp"
#include "user/user_access.hpp"
#include "user/user_attributes.hpp"

namespace orbinel {

/// Everything that the library consists of while it runs: the one place where each object is owned, in the order of
/// the source tree, and given exactly the references that it needs. Where two objects need each other, the later one
/// is bound here, and unbound in reverse.
///
/// A world can be made, ended and made anew over the same stores, which is a relaunch of the application.
///
/// Threads: made on the main thread. The last reference may be dropped anywhere; once every call from outside has left,
/// the world is destroyed on the main queue.
class World {
public:
    /// The services must all be present.
    [[nodiscard]] static std::shared_ptr<World> create(platform::Services services);
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// What an application's object may hold of this world.
    template <typename Part>
    [[nodiscard]] LibraryPart<Part> part(Part& part) const noexcept {
        return {&part, entrance.get(), entrance->opening()};
    }

    /// Cancels what is under way, begins nothing any more, and waits for what is running, within the limit.
    void end(std::chrono::milliseconds limit = std::chrono::seconds(1));

    const platform::Services services;

    /// Runs on the main thread when the world has been destroyed. To be set while the world is held.
    std::function<void()> afterwards;

    // base
    const Entrance::Claimed entrance;  // the first, to be given back when nothing else is left
    Reports reports;
    Lifetime ownLifetime;

    // session
    SessionCollaborators collaborators;
    OrbinelEndpoints endpoints;
    OrbinelEncryptor encryptor;
    OrbinelHelper helper;
    OrbinelSession session;
    OfflineQueue offlineQueue;
    OrbinelRequest requestSender;
    SessionStop sessionStop;
    OrbinelConfig sessionStart;

    // privacy
    CollectionSwitches collectionSwitches;
    OrbinelPrivacy privacy;

    // events
    Validation validation;
    EventBudget eventBudget;
    EventRecorder eventRecorder;

    // user
    OrbinelListeners idListeners;
    OrbinelDeviceAttributes deviceAttributes;
    OrbinelUserInternal userAttributes;
    IdentityRequest identityRequest;
    OrbinelIdentity identity;
    Login login;
    const UserAccess userAccess;

    // tools
    TestDevices testDevices;
    AutoIntegration autoIntegration;
    IntegrationWizard wizard;
    ToolLinks toolLinks;
    MessageCenter messageCenter;

    // diagnostics
    OrbinelLogger logger;

    // commerce
    ProductAccess productAccess;
    ProductCreation productCreation;
    CommerceEvents commerceEvents;
    OrbinelPageVisit pageVisits;
    OrbinelCartReminder cartReminder;
    OrbinelWishlist wishlist;

    // personalisation
    OrbinelContentOptimizer contentOptimizer;
    RecommendedIds recommendedIds;
    OrbinelRecommendationLogger recommendationLogger;
    OrbinelRecommendation recommendations;

    // inapp
    PresentedInapp presentedInapp;
    OrbinelInapps inapps;
    FrequencyCap frequencyCap;
    InappLogs inappLogs;
    CampaignSelection campaignSelection;
    NativeActions nativeActions;
    UrlOpener urlOpener;
    ShakeDetector shakeDetector;
    TemplateMessages templateMessages;
    TemplateEvents templateEvents;
    TemplateAttributes templateAttributes;
    TemplateProducts templateProducts;
    TemplateAnswers templateAnswers;
    OrbinelTemplateStore templateStore;
    ButtonClicks inappButtons;
    TemplateBridge templateBridge;
    InappPresentation inappPresentation;

    // push
    PushPermission pushPermission;
    DeviceToken deviceToken;
    CarouselLink carouselLink;
    PushLinks pushLinks;
    PushLog pushLog;
    OrbinelPush push;
    UniversalLinks universalLinks;
    OrbinelConfigurations configurations;
    ReplacedOperations replacedOperations;
    Interception interception;
    PayloadDelivery payloadDelivery;

    // core
    OrbinelCrashHandler crashHandler;
    SessionEventsBinding sessionEvents;
    Lifecycle lifecycle;
    Initialisation initialisation;

private:
    explicit World(platform::Services given);
    void bind();
    void bindInapp();
    void unbindInapp() noexcept;
    void unbind() noexcept;
};

/// One sentence for the first service that is missing; nothing where all are present.
[[nodiscard]] std::optional<std::string> missingService(const platform::Services& services);

}  // namespace orbinel

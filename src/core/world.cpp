#include "core/world.hpp"

#include <array>
#include <utility>

namespace orbinel {

World::World(platform::Services given)
    : services(std::move(given)),
      entrance(Entrance::claim()),
      reports(*services.console),
      ownLifetime(reports),
      encryptor(reports, *services.base64),
      helper({reports, *services.scheduler, *services.device, *services.json, *services.defaults, *services.secureItems,
              ownLifetime}),
      session({reports, helper, *services.json, collaborators}),
      offlineQueue({reports, services.defaults->standard(), *services.json, *services.scheduler, ownLifetime}),
      requestSender({reports, helper, session, endpoints, encryptor, offlineQueue, collaborators, ownLifetime,
                     *services.http, *services.json, *services.scheduler}),
      sessionStop({reports, session, requestSender, endpoints, collaborators}),
      sessionStart({reports, helper, session, requestSender, offlineQueue, endpoints, collaborators, ownLifetime,
                    *services.scheduler, *services.device}),
      collectionSwitches(reports),
      privacy({reports, helper, session, requestSender, endpoints, collaborators}),
      validation(reports),
      eventRecorder({reports, helper, session, validation, eventBudget, *services.json}),
      idListeners(reports),
      deviceAttributes({reports, helper, collectionSwitches, ownLifetime, *services.device, *services.application,
                        *services.notifications}),
      userAttributes({reports, helper, validation, deviceAttributes}),
      identityRequest({reports, session, requestSender, endpoints}),
      identity({reports, helper, session, idListeners, identityRequest, userAttributes}),
      login({reports, helper, identity, userAttributes, session, sessionStop, sessionStart, ownLifetime,
             *services.scheduler}),
      userAccess{reports, validation, userAttributes, identity, login},
      testDevices({reports, helper, session, endpoints, requestSender}),
      autoIntegration({reports, helper}),
      wizard({reports, helper, session, deviceAttributes, testDevices, endpoints, ownLifetime, *services.http,
              *services.json, *services.console}),
      toolLinks({reports, testDevices, wizard}),
      messageCenter({reports, helper, session, identity, endpoints, requestSender, ownLifetime, *services.scheduler}),
      logger({reports, helper, session, identity, deviceAttributes, testDevices, endpoints, encryptor, ownLifetime,
              *services.scheduler, *services.http, *services.json, *services.console}),
      productAccess{reports, helper, validation},
      productCreation({reports, helper}),
      commerceEvents({reports, helper, eventRecorder}),
      pageVisits({commerceEvents}),
      cartReminder({commerceEvents, session}),
      wishlist({commerceEvents}),
      contentOptimizer({reports, helper, session, validation, *services.json, *services.defaults, testDevices}),
      recommendationLogger({reports, helper, session, eventRecorder, recommendedIds, ownLifetime, *services.scheduler}),
      recommendations({reports, helper, session, productCreation, recommendedIds, recommendationLogger, ownLifetime,
                       *services.http, *services.json}),
      inapps(reports),
      frequencyCap({reports, helper}),
      inappLogs({reports, helper, session, eventRecorder, presentedInapp}),
      campaignSelection({reports, helper, inapps, frequencyCap, presentedInapp, inappLogs}),
      nativeActions({reports, helper, ownLifetime, *services.scheduler, *services.application, *services.notifications,
                     *services.reviewPrompt, *services.pasteboard, *services.haptics}),
      urlOpener({reports, ownLifetime, *services.scheduler, *services.application}),
      shakeDetector({reports, ownLifetime, *services.scheduler, *services.accelerometer}),
      templateMessages({reports, session, *services.json, presentedInapp}),
      templateEvents({reports, helper, eventRecorder, presentedInapp, ownLifetime, *services.json, *services.scheduler,
                      *services.notificationCentre}),
      templateAttributes({reports, userAttributes, *services.json, *services.scheduler}),
      templateProducts({reports, productCreation, cartReminder, presentedInapp, *services.json}),
      templateAnswers({reports, session, presentedInapp, *services.json}),
      templateStore({reports, templateEvents, templateAttributes, templateProducts, templateAnswers, templateMessages,
                     nativeActions, shakeDetector, urlOpener, presentedInapp, ownLifetime, *services.json,
                     *services.scheduler, *services.notificationCentre}),
      inappButtons({reports, helper, userAttributes, nativeActions, urlOpener, ownLifetime, *services.json,
                    *services.scheduler}),
      templateBridge({reports, templateStore, *services.json}),
      inappPresentation({reports, helper, identity, testDevices, presentedInapp, inappLogs, ownLifetime,
                         *services.scheduler, *services.json, *services.console, *services.notificationCentre,
                         *services.application, *services.views}),
      pushPermission({reports, helper, ownLifetime, *services.scheduler, *services.notifications}),
      deviceToken({reports, helper, deviceAttributes}),
      carouselLink({reports, helper}),
      pushLinks({reports, urlOpener, inappPresentation, ownLifetime, *services.scheduler}),
      pushLog({reports, helper, session, eventRecorder}),
      push({reports, helper, deviceAttributes, autoIntegration, contentOptimizer, campaignSelection, carouselLink,
            pushLinks, pushLog, ownLifetime, *services.json, *services.scheduler}),
      universalLinks({reports, helper, session, ownLifetime, *services.http}),
      configurations({reports, *services.application}),
      replacedOperations({reports, autoIntegration, toolLinks, deviceToken, universalLinks, push, *services.console}),
      interception({reports, configurations, deviceAttributes, replacedOperations, ownLifetime, *services.application,
                    *services.notifications}),
      payloadDelivery({reports, interception, *services.application}),
      crashHandler({reports, session, deviceAttributes}),
      sessionEvents(eventRecorder, validation, eventBudget),
      lifecycle({reports, helper, session, sessionStop, sessionStart, privacy, identity, deviceAttributes, testDevices,
                 wizard, contentOptimizer, campaignSelection, inappPresentation, push, pushLog, carouselLink,
                 ownLifetime, *services.application, *services.notifications}),
      initialisation({reports,
                      helper,
                      endpoints,
                      session,
                      sessionStop,
                      sessionStart,
                      privacy,
                      userAttributes,
                      identity,
                      autoIntegration,
                      wizard,
                      contentOptimizer,
                      recommendations,
                      lifecycle,
                      templateEvents,
                      frequencyCap,
                      inappPresentation,
                      push,
                      interception,
                      ownLifetime,
                      *services.scheduler,
                      *services.notificationCentre}) {}

std::shared_ptr<World> World::create(platform::Services services) {
    // The deleter owns nothing: late work that still waits in the scheduler keeps the deleter in memory.
    std::shared_ptr<World> world(new World(std::move(services)), [](World* last) {
        last->entrance->close();
        last->entrance->whenLeft([last] {
            const auto scheduler = last->services.scheduler;
            const auto destroy = [last] {
                const auto next = std::move(last->afterwards);
                delete last;
                if (next) next();
            };
            if (scheduler->isMain()) {
                destroy();
            } else {
                scheduler->postMain(destroy);
            }
        });
    });
    world->bind();
    world->ownLifetime.begin(world);
    world->entrance->open(world.get());
    world->productCreation.begin(world->part(world->productAccess));
    world->offlineQueue.reclaim();
    // Not at once: opening a store wakes the service's thread, and the start is the moment in which it counts.
    world->services.scheduler->postMain(
        world->ownLifetime.whileAlive([contents = &world->contentOptimizer] { contents->openCache(); }));
    world->services.defaults->setProblemHandler(
        world->ownLifetime.whileAlive([reports = &world->reports](std::string problem) {
            reports->log(LogType::common, LogLevel::error, "A store could not be used.", [&] {
                return Dictionary{{"problem", std::move(problem)}};
            });
        }));
    world->interception.setObservers();
    return world;
}

void World::bind() {
    reports.diagnosticLog.bind(logger);
    reports.wizardFeed.bind(wizard);
    reports.crashReports.bind(crashHandler);
    collaborators.identity.bind(identity);
    collaborators.device.bind(deviceAttributes);
    collaborators.attributes.bind(userAttributes);
    collaborators.events.bind(sessionEvents);
    collaborators.campaigns.bind(campaignSelection);
    collaborators.contents.bind(contentOptimizer);
    collaborators.recommendations.bind(recommendations);
    collaborators.logSwitches.bind(logger);
    collaborators.failedConsent.bind(privacy);
    eventRecorder.campaigns.bind(campaignSelection);
    login.displayedInapp.bind(inappPresentation);
    cartReminder.recommendations.bind(recommendationLogger);
    bindInapp();
}

void World::bindInapp() {
    campaignSelection.presenter.bind(inappPresentation);
    campaignSelection.buttonClicks.bind(inappButtons);
    inappLogs.shakeDetector.bind(shakeDetector);
    nativeActions.pushPermission.bind(pushPermission);
    inappButtons.remoteNotifications.bind(payloadDelivery);
    for (auto* screen : {&templateMessages.screen, &templateStore.screen, &inappButtons.screen}) {
        screen->bind(inappPresentation);
    }
    for (auto* logging : {&templateStore.logging, &inappButtons.logging}) logging->bind(inappLogs);
    inappPresentation.page.bind(templateBridge);
    inappPresentation.buttonClicks.bind(inappButtons);
    inappPresentation.urlOpening.bind(urlOpener);
    inappPresentation.shakeDetector.bind(shakeDetector);
}

void World::unbindInapp() noexcept {
    inappPresentation.shakeDetector.unbind();
    inappPresentation.urlOpening.unbind();
    inappPresentation.buttonClicks.unbind();
    inappPresentation.page.unbind();
    for (auto* logging : {&inappButtons.logging, &templateStore.logging}) logging->unbind();
    for (auto* screen : {&inappButtons.screen, &templateStore.screen, &templateMessages.screen}) screen->unbind();
    inappButtons.remoteNotifications.unbind();
    nativeActions.pushPermission.unbind();
    inappLogs.shakeDetector.unbind();
    campaignSelection.buttonClicks.unbind();
    campaignSelection.presenter.unbind();
}

void World::unbind() noexcept {
    unbindInapp();
    cartReminder.recommendations.unbind();
    login.displayedInapp.unbind();
    eventRecorder.campaigns.unbind();
    collaborators.failedConsent.unbind();
    collaborators.logSwitches.unbind();
    collaborators.recommendations.unbind();
    collaborators.contents.unbind();
    collaborators.campaigns.unbind();
    collaborators.events.unbind();
    collaborators.attributes.unbind();
    collaborators.device.unbind();
    collaborators.identity.unbind();
    reports.crashReports.unbind();
    reports.wizardFeed.unbind();
    reports.diagnosticLog.unbind();
}

// The stores' problem handler stays: it does nothing any more, and taking it away would wait for one that is running.
void World::end(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    entrance->close();
    ownLifetime.end();
    interception.takeBack();
    sessionStart.cancelAll();
    requestSender.cancelAll();
    wizard.cancelAll();
    logger.cancelAll();
    recommendations.cancelAll();
    pushLinks.cancelAll();
    universalLinks.cancelAll();
    ownLifetime.waitUntilQuiet(limit);
    entrance->waitUntilLeft(
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()));
}

World::~World() {
    end();
    unbind();
}

std::optional<std::string> missingService(const platform::Services& services) {
    const std::array<std::pair<const char*, bool>, 16> present{{
        {"scheduler", services.scheduler != nullptr},
        {"http", services.http != nullptr},
        {"json", services.json != nullptr},
        {"base64", services.base64 != nullptr},
        {"defaults", services.defaults != nullptr},
        {"secureItems", services.secureItems != nullptr},
        {"notificationCentre", services.notificationCentre != nullptr},
        {"application", services.application != nullptr},
        {"device", services.device != nullptr},
        {"notifications", services.notifications != nullptr},
        {"console", services.console != nullptr},
        {"views", services.views != nullptr},
        {"accelerometer", services.accelerometer != nullptr},
        {"haptics", services.haptics != nullptr},
        {"pasteboard", services.pasteboard != nullptr},
        {"reviewPrompt", services.reviewPrompt != nullptr},
    }};
    for (const auto& [name, there] : present) {
        if (!there) return "orbinel::start: the service \"" + std::string(name) + "\" is missing.";
    }
    return std::nullopt;
}

}  // namespace orbinel

#include "core/world.hpp"

#include <array>
#include <utility>

namespace orbinel {

World::World(platform::Services given)
    : services(std::move(given)),
      reports(*services.console),
      ownLifetime(reports),
      encryptor(reports, *services.base64),
      helper(
          {reports, *services.scheduler, *services.device, *services.json, *services.defaults, *services.secureItems}),
      session({reports, helper, *services.json, collaborators}),
      offlineQueue({reports, services.defaults->standard(), *services.json, *services.scheduler, ownLifetime}),
      requestSender({reports, helper, session, endpoints, encryptor, offlineQueue, collaborators, ownLifetime,
                     *services.http, *services.json, *services.scheduler}),
      sessionStop({reports, session, requestSender, endpoints, collaborators}),
      sessionStart({reports, helper, session, requestSender, offlineQueue, endpoints, collaborators, ownLifetime,
                    *services.scheduler, *services.device}),
      validation(reports),
      eventRecorder({reports, helper, session, validation, eventBudget, *services.json, ownLifetime}),
      idListeners(reports),
      identity({reports, helper, session, idListeners}),
      deviceAttributes(
          {reports, helper, ownLifetime, *services.device, *services.application, *services.notifications}),
      crashHandler({reports, session, deviceAttributes}),
      pendingFeatures(reports),
      sessionEvents(eventRecorder, validation, eventBudget),
      lifecycle({reports, helper, session, sessionStop, sessionStart, identity, deviceAttributes, pendingFeatures,
                 ownLifetime, *services.application, *services.notifications}),
      initialisation({reports, helper, endpoints, session, sessionStop, sessionStart, identity, lifecycle,
                      pendingFeatures, ownLifetime, *services.scheduler, *services.notificationCentre}) {}

std::shared_ptr<World> World::create(platform::Services services) {
    // The deleter owns nothing: late work that still waits in the scheduler keeps the deleter in memory.
    std::shared_ptr<World> world(new World(std::move(services)), [](World* last) {
        const auto scheduler = last->services.scheduler;
        if (scheduler->isMain()) {
            delete last;
        } else {
            scheduler->postMain([last] { delete last; });
        }
    });
    world->bind();
    world->ownLifetime.begin(world);
    world->offlineQueue.reclaim();
    world->services.defaults->setProblemHandler(
        world->ownLifetime.whileAlive([reports = &world->reports](std::string problem) {
            reports->log(LogType::common, LogLevel::error, "A store could not be used.", [&] {
                return Dictionary{{"problem", std::move(problem)}};
            });
        }));
    return world;
}

void World::bind() {
    reports.crashReports.bind(crashHandler);
    collaborators.identity.bind(identity);
    collaborators.device.bind(deviceAttributes);
    collaborators.attributes.bind(pendingFeatures);
    collaborators.events.bind(sessionEvents);
    collaborators.campaigns.bind(pendingFeatures);
    collaborators.contents.bind(pendingFeatures);
    collaborators.recommendations.bind(pendingFeatures);
    collaborators.logSwitches.bind(pendingFeatures);
    collaborators.failedConsent.bind(pendingFeatures);
    eventRecorder.campaigns.bind(pendingFeatures);
    deviceAttributes.collection.bind(pendingFeatures);
}

void World::unbind() noexcept {
    deviceAttributes.collection.unbind();
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
}

// The stores' problem handler stays: it does nothing any more, and taking it away would wait for one that is running.
void World::end(std::chrono::milliseconds limit) {
    ownLifetime.end();
    sessionStart.cancelAll();
    requestSender.cancelAll();
    ownLifetime.waitUntilQuiet(limit);
}

World::~World() {
    end();
    unbind();
}

std::optional<std::string> missingService(const platform::Services& services) {
    const std::array<std::pair<const char*, bool>, 11> present{{
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
    }};
    for (const auto& [name, there] : present) {
        if (!there) return "orbinel::start: the service \"" + std::string(name) + "\" is missing.";
    }
    return std::nullopt;
}

}  // namespace orbinel

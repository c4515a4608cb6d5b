#include "apps/orbinel/play/play_host.hpp"

#include <algorithm>
#include <random>
#include <utility>

#include "apps/orbinel/play/gtk_interface.hpp"
#include "apps/orbinel/play/headless_interface.hpp"
#include "apps/orbinel/play/traced_device.hpp"
#include "core/current_world.hpp"
#include "core/world.hpp"
#include "hosts/common/glib_base64.hpp"
#include "hosts/common/in_process_notification_centre.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "orbinel/headless/headless_console.hpp"
#include "orbinel/headless/headless_haptics.hpp"
#include "orbinel/headless/headless_pasteboard.hpp"
#include "orbinel/headless/headless_review_prompt.hpp"
#include "orbinel/linux/linux_host.hpp"
#include "orbinel/orbinel.hpp"
#include "session/stored_keys.hpp"

namespace orbinel::tool {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds longestEnd{5000};
constexpr const char* wrapperVersion = "1.0.0";

/// In virtual time two plays of one scenario are the same play; in real time they are two devices.
std::uint64_t deviceSeed(bool isVirtual) { return isVirtual ? 1 : std::random_device()(); }

}  // namespace

std::shared_ptr<headless::HeadlessScheduler> makeScheduler(const std::optional<double>& clockStart) {
    using headless::HeadlessScheduler;
    if (clockStart) return std::make_shared<HeadlessScheduler>(*clockStart);
    return std::make_shared<HeadlessScheduler>(HeadlessScheduler::RealClock{});
}

PlayHost::PlayHost(std::shared_ptr<headless::HeadlessScheduler> scheduler, bool isVirtual,
                   std::filesystem::path directory, Trace& trace, Interface interface)
    : scheduler_(std::move(scheduler)),
      directory_(std::move(directory)),
      json_(std::make_shared<hosts::RapidJson>()),
      base64_(std::make_shared<hosts::GlibBase64>()),
      http_(std::make_shared<TracedHttp>(hosts::makeLinuxHttp(), base64_, trace, isVirtual ? scheduler_ : nullptr)),
      defaults_(std::make_shared<hosts::SqliteDefaults>(directory_, json_)),
      secureItems_(std::make_shared<RememberingSecureItems>(hosts::makeLinuxSecureItems(directory_))),
      notificationCentre_(std::make_shared<hosts::InProcessNotificationCentre>()),
      application_(std::make_shared<headless::HeadlessApplication>(scheduler_)),
      device_(std::make_shared<headless::HeadlessDevice>(deviceSeed(isVirtual))),
      notifications_(std::make_shared<headless::HeadlessNotifications>()),
      console_(std::make_shared<headless::HeadlessConsole>([&trace](std::string_view line) {
          trace.write({{"console", line}});
      })),
      interface_(makeInterface(interface)),
      accelerometer_(std::make_shared<headless::HeadlessAccelerometer>(scheduler_)),
      trace_(trace),
      presentation_(trace) {
    application_->setState(platform::ApplicationState::inactive);
}

PlayHost::~PlayHost() {
    shutdown();
    static_cast<void>(settle(longestEnd));
}

std::unique_ptr<PlayInterface> PlayHost::makeInterface(Interface interface) {
    if (interface == Interface::headless) {
        return std::make_unique<HeadlessInterface>(std::make_shared<headless::HeadlessViews>(scheduler_, device_));
    }
    return makeGtkInterface([this](const auto& condition, auto limit) { return drainUntil(condition, limit); });
}

platform::Services PlayHost::services() const {
    return {scheduler_,
            http_,
            json_,
            base64_,
            defaults_,
            secureItems_,
            notificationCentre_,
            std::make_shared<TracedApplication>(application_, trace_),
            device_,
            std::make_shared<TracedNotifications>(notifications_, trace_),
            console_,
            interface_->views(),
            accelerometer_,
            std::make_shared<TracedHaptics>(std::make_shared<headless::HeadlessHaptics>(), trace_),
            std::make_shared<TracedPasteboard>(std::make_shared<headless::HeadlessPasteboard>(), trace_),
            std::make_shared<TracedReviewPrompt>(std::make_shared<headless::HeadlessReviewPrompt>(), trace_)};
}

void PlayHost::changeDevice(const std::vector<FactChange>& changes) {
    const DeviceParts parts{*device_, *application_, *notifications_, *scheduler_, *interface_, *accelerometer_};
    for (const auto& change : changes) change(parts);
}

void PlayHost::write(const Preset& preset) {
    const auto fill = [](platform::DefaultsStore& store, const Dictionary& values) {
        for (const auto& [key, value] : values) store.set(key, value);
        store.synchronize();
    };
    fill(*defaults_->standard(), preset.defaults);
    if (!preset.appGroup.empty()) fill(*defaults_->appGroup(preset.appGroupName), preset.appGroup);
    if (!preset.contentCache.empty()) fill(*defaults_->suite(keys::contentSuite), preset.contentCache);
    for (const auto& [key, value] : preset.secure) {
        const auto data = json_->serialise(value, platform::JsonStyle::compact);
        if (data) secureItems_->store(key, key, *data);
        if (value.isAbsent()) secureItems_->remove(key, key);
    }
    defaults_->waitUntilWritten();
}

void PlayHost::launch(const HostDescription& host) {
    application_->setDelegate(nullptr);
    notifications_->setDelegate(nullptr);
    delegates_.emplace(host, trace_);
    if (!start(services())) throw NotCarriedOut("the library does not start");
    current_world::get()->inappPresentation.observer.bind(presentation_);
    if (host.isHybrid) Orbinel::setHybridSDKVersion(wrapperVersion);
    delegates_->setOn(*application_, *notifications_);
    drain();
}

void PlayHost::end() {
    shutdown();
    waitForCancelledRequests();
}

void PlayHost::kill() {
    if (auto world = current_world::take()) {
        world->ownLifetime.end();  // whatever still comes finds nothing to do
        world.reset();
    }
    waitForCancelledRequests();
    const std::weak_ptr<hosts::SqliteDefaults> old = defaults_;
    defaults_.reset();  // commits what was synchronised and drops the rest
    if (!old.expired()) throw NotCarriedOut("the library still holds its stores");
    defaults_ = std::make_shared<hosts::SqliteDefaults>(directory_, json_);
}

void PlayHost::waitForCancelledRequests() {
    if (!settle(longestEnd)) throw NotCarriedOut("a cancelled request does not end");
}

void PlayHost::post(std::string_view notification, const Dictionary& info) {
    namespace names = platform::notification_names;
    if (notification == names::didBecomeActive) application_->setState(platform::ApplicationState::active);
    if (notification == names::didEnterBackground) application_->setState(platform::ApplicationState::background);
    if (notification == names::keyboardWillShow) interface_->setKeyboardOpen(true);
    if (notification == names::keyboardWillHide) interface_->setKeyboardOpen(false);
    notificationCentre_->post(notification, info);
}

void PlayHost::deliver(const Delivery& delivery) { delegates_->deliver(delivery, *application_, *notifications_); }

void PlayHost::shake(const platform::Acceleration& acceleration) {
    accelerometer_->sample(acceleration.x, acceleration.y, acceleration.z);
}

void PlayHost::drain() {
    do {
        scheduler_->runUntilIdle();
        interface_->iterate();
        // Twice: what a store's completion asks a store for stands in line behind the first waiting.
        defaults_->waitUntilWritten();
        defaults_->waitUntilWritten();
    } while (scheduler_->hasDueWork());
}

void PlayHost::turn() {
    scheduler_->runUntilIdle();
    interface_->iterate();
    scheduler_->waitForWork(interface_->longestWait());
}

bool PlayHost::settle(std::chrono::milliseconds limit, const std::vector<std::string>& ignoredUrlParts) {
    return drainUntil([&] { return http_->inFlight(ignoredUrlParts) == 0; }, limit);
}

bool PlayHost::drainUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    for (;;) {
        const auto known = http_->changes();
        drain();
        // A completion that has returned since then may have left work behind.
        if (condition() && !scheduler_->hasDueWork() && http_->changes() == known) return true;
        if (Clock::now() >= deadline) return false;
        http_->waitForChange(known, std::min(deadline, Clock::now() + interface_->longestWait()));
    }
}

}  // namespace orbinel::tool

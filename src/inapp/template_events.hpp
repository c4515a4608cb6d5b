#pragma once

#include <memory>
#include <string_view>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "events/event_recorder.hpp"
#include "inapp/presented_inapp.hpp"
#include "inapp/template_values.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/notification_centre.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// The events that a page tags. They travel by a notification of their own, which the application may observe as well.
///
/// Threads: any.
class TemplateEvents {
public:
    static constexpr std::string_view event_base_inapp = "event_base_inapp";

    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        EventRecorder& recorder;
        const PresentedInapp& presented;
        const Lifetime& lifetime;
        const platform::Json& json;
        const platform::Scheduler& scheduler;
        platform::NotificationCentre& notificationCentre;
    };

    explicit TemplateEvents(const Needs& needs);

    /// Has the events tagged from here on, once each however often this is called.
    void addObserverForEventInapps() noexcept;

    /// Posts the notification with {"events": events}.
    void sendNotificationForEventBaseInapp(const Array& events) noexcept;

    /// Tags every event under "events": {"name", "params": descriptors}. An element that is none is skipped.
    void tagEventsFromTemplate(const Dictionary& info) noexcept;

    // The events that were posted and are not tagged yet.
    [[nodiscard]] Array returnCurrentEvents() const noexcept;
    void clearEvents() noexcept;

private:
    void tag(const Dictionary& event);
    [[nodiscard]] std::shared_ptr<EventParameters> returnLeadCollectedParameters() const;
    [[nodiscard]] std::shared_ptr<EventParameters> parametersOf(const Array& descriptors) const;
    void addTo(EventParameters& parameters, const template_values::Descriptor& descriptor) const;
    void setCurrentEvents(Array events);

    Reports& reports_;
    OrbinelHelper& helper_;
    EventRecorder& recorder_;
    const PresentedInapp& presented_;
    const Lifetime& lifetime_;
    const platform::Json& json_;
    const platform::Scheduler& scheduler_;
    platform::NotificationCentre& notificationCentre_;

    mutable Mutex mutex_;
    Array currentEvents_ ORBINEL_GUARDED_BY(mutex_);
    platform::Ticket observation_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel

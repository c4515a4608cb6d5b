#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/defaults.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel {

/// Keeps session stops from the moment they are handed over until the backend has answered them.
///
/// A stop is either queued (its send failed; a later session start sends it again) or in flight. It leaves only when
/// the backend has answered it, or when it has proved impossible to send. A process that dies in between finds its
/// stops queued again at the next launch, so that a stop may arrive twice but is never lost.
///
/// Threads: any. Functions given run on a thread of the store, and not after the world has ended.
class OfflineQueue {
public:
    using Element = platform::ElementId;

    struct Needs {
        Reports& reports;
        std::shared_ptr<platform::DefaultsStore> store;
        const platform::Json& json;
        platform::Scheduler& scheduler;
        const Lifetime& lifetime;
    };

    explicit OfflineQueue(const Needs& needs);

    /// Takes up what earlier launches left: to be called once, before anything else. What became of it is reported on
    /// the main queue, when the application has had its turn to listen.
    void reclaim();

    /// Writes a stop down as in flight. `handedOver` runs once it survives the process being killed, with nothing
    /// where the store could not take it.
    void handOver(std::string stop, std::function<void(std::optional<Element>)> handedOver);

    /// Queues a stop whose send failed, in plain form. With the element that it is in flight as, that one is put back.
    void addStopRequestToQueue(const Dictionary& stop, std::optional<Element> inFlight = std::nullopt) noexcept;

    /// Takes every queued stop out at once, oldest first; they are then in flight.
    void takeAll(std::function<void(std::vector<platform::StoredElement>)> taken);

    /// Asks how many stops are queued.
    void count(std::function<void(std::size_t)> counted);

    /// The backend has answered.
    void delivered(Element element);

    /// The stop can never be sent: it is dropped, and reported, at the next launch.
    void giveUp(Element element);

private:
    void reportReclaimed(const platform::ReclaimedElements& reclaimed) noexcept;

    Reports& reports_;
    const std::shared_ptr<platform::DefaultsStore> store_;
    const platform::Json& json_;
    platform::Scheduler& scheduler_;
    const Lifetime& lifetime_;
};

}  // namespace orbinel

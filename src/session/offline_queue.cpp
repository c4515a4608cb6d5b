#include "session/offline_queue.hpp"

#include "base/guard.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

OfflineQueue::OfflineQueue(const Needs& needs)
    : reports_(needs.reports),
      store_(needs.store),
      json_(needs.json),
      scheduler_(needs.scheduler),
      lifetime_(needs.lifetime) {}

void OfflineQueue::reclaim() {
    store_->reclaim(keys::offlineQueue, lifetime_.whileAlive([this](platform::ReclaimedElements reclaimed) {
        scheduler_.postMain(
            lifetime_.whileAlive([this, reclaimed = std::move(reclaimed)] { reportReclaimed(reclaimed); }));
    }));
}

void OfflineQueue::reportReclaimed(const platform::ReclaimedElements& reclaimed) noexcept {
    if (reclaimed.returned > 0) {
        reports_.note([&] { return std::to_string(reclaimed.returned) + " session stops are queued again."; });
    }
    for (const auto& stop : reclaimed.dropped) {
        reports_.log(LogType::common, LogLevel::error, "Dropped a queued request that can not be sent.", [&] {
            return Dictionary{{"request_type", "STOP"}, {"bytes", static_cast<std::int64_t>(stop.size())}};
        });
    }
}

void OfflineQueue::handOver(std::string stop, std::function<void(std::optional<Element>)> handedOver) {
    store_->appendInFlight(keys::offlineQueue, std::move(stop), lifetime_.whileAlive(std::move(handedOver)));
}

void OfflineQueue::addStopRequestToQueue(const Dictionary& stop, std::optional<Element> inFlight) noexcept {
    guarded(reports_, {"-[OrbinelRequest addStopRequestToQueue:]", DescriptionForm::functionAndLine}, [&] {
        if (inFlight) {
            store_->requeue(keys::offlineQueue, *inFlight, [] {});
        } else {
            auto text = json_.serialise(stop, platform::JsonStyle::compact);
            if (!text) return reports_.note("A session stop can not be queued: it can not be written.");
            store_->append(keys::offlineQueue, std::move(*text));
        }
        store_->synchronize();
        reports_.log(LogType::common, LogLevel::info, "Request is added to Queue.", [] {
            return Dictionary{{"request_type", "STOP"}};
        });
    });
}

void OfflineQueue::takeAll(std::function<void(std::vector<platform::StoredElement>)> taken) {
    store_->take(keys::offlineQueue, lifetime_.whileAlive(std::move(taken)));
}

void OfflineQueue::count(std::function<void(std::size_t)> counted) {
    store_->count(keys::offlineQueue, lifetime_.whileAlive(std::move(counted)));
}

void OfflineQueue::delivered(Element element) { store_->finish(keys::offlineQueue, element); }

void OfflineQueue::giveUp(Element element) { store_->giveUp(keys::offlineQueue, element); }

}  // namespace orbinel

#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/defaults.hpp"

namespace orbinel::platform {

/// Hands every call on to another store; derive from it to make one fail.
class ForwardingDefaultsStore : public DefaultsStore {
public:
    explicit ForwardingDefaultsStore(std::shared_ptr<DefaultsStore> target) : target_(std::move(target)) {}

    Value value(std::string_view key) const noexcept override { return target_->value(key); }
    void set(std::string_view key, Value value) noexcept override { target_->set(key, std::move(value)); }
    std::vector<std::string> keys() const noexcept override { return target_->keys(); }
    void synchronize() noexcept override { target_->synchronize(); }
    void append(std::string_view key, std::string json) noexcept override { target_->append(key, std::move(json)); }
    void appendInFlight(std::string_view key, std::string json,
                        std::function<void(std::optional<ElementId>)> committed) noexcept override {
        target_->appendInFlight(key, std::move(json), std::move(committed));
    }
    void take(std::string_view key, std::function<void(std::vector<StoredElement>)> taken) noexcept override {
        target_->take(key, std::move(taken));
    }
    void count(std::string_view key, std::function<void(std::size_t)> counted) noexcept override {
        target_->count(key, std::move(counted));
    }
    void requeue(std::string_view key, ElementId id, std::function<void()> requeued) noexcept override {
        target_->requeue(key, id, std::move(requeued));
    }
    void finish(std::string_view key, ElementId id) noexcept override { target_->finish(key, id); }
    void giveUp(std::string_view key, ElementId id) noexcept override { target_->giveUp(key, id); }
    void reclaim(std::string_view key, std::function<void(ReclaimedElements)> reclaimed) noexcept override {
        target_->reclaim(key, std::move(reclaimed));
    }
    void erase(std::vector<std::string> keys, std::function<void(std::string)> erased) noexcept override {
        target_->erase(std::move(keys), std::move(erased));
    }

protected:
    const std::shared_ptr<DefaultsStore> target_;
};

/// Hands every call on to another service; derive from it to wrap one store.
class ForwardingDefaults : public Defaults {
public:
    explicit ForwardingDefaults(std::shared_ptr<Defaults> target) : target_(std::move(target)) {}

    std::shared_ptr<DefaultsStore> standard() noexcept override { return target_->standard(); }
    std::shared_ptr<DefaultsStore> suite(std::string_view name) noexcept override { return target_->suite(name); }
    std::shared_ptr<DefaultsStore> appGroup(std::string_view name) noexcept override { return target_->appGroup(name); }
    void setProblemHandler(std::function<void(std::string)> handler) noexcept override {
        target_->setProblemHandler(std::move(handler));
    }

protected:
    const std::shared_ptr<Defaults> target_;
};

}  // namespace orbinel::platform

#pragma once

#include <concepts>
#include <string_view>
#include <utility>
#include <vector>

#include "base/guard.hpp"
#include "base/reports.hpp"
#include "events/event_recorder.hpp"
#include "orbinel/product.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// The common course of all commerce operations: through the gate, an internal event, a wizard feed.
///
/// Threads: any; no state.
class CommerceEvents {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        EventRecorder& recorder;
    };

    explicit CommerceEvents(const Needs& needs)
        : reports_(needs.reports), helper_(needs.helper), recorder_(needs.recorder) {}

    /// Runs the body of a public operation, where the library may work.
    template <std::invocable Body>
    void throughGate(const GuardedOperation& operation, Body&& body) const noexcept {
        guarded(reports_, operation, [&] {
            if (helper_.shouldProceed()) std::forward<Body>(body)();
        });
    }

    void tag(std::string_view eventName, const Dictionary& parameters = {}) const {
        recorder_.recordInternalEvent(eventName, parameters);
    }

    template <std::invocable Data>
    void feed(std::string_view methodType, Data&& data) const noexcept {
        reports_.feedToPanel(methodType, std::forward<Data>(data));
    }
    void feed(std::string_view methodType) const noexcept {
        feed(methodType, [] { return Dictionary(); });
    }

    /// One event and one feed for every valid product, each with its summary; the others are passed over.
    void tagEachValid(const std::vector<OrbinelProduct>& products, std::string_view eventName,
                      std::string_view methodType) const;

    /// Leaves a record of a product that an operation refused.
    void reportInvalid(const OrbinelProduct& product, LogType type, std::string_view operation) const;

private:
    Reports& reports_;
    OrbinelHelper& helper_;
    EventRecorder& recorder_;
};

}  // namespace orbinel

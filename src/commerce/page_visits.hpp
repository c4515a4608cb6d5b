#pragma once

#include <vector>

#include "commerce/commerce_events.hpp"
#include "orbinel/product.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// The pages of a shop that a person visits. Every operation asks the gate.
///
/// Threads: any; no state.
class OrbinelPageVisit {
public:
    struct Needs {
        const CommerceEvents& events;
    };

    explicit OrbinelPageVisit(const Needs& needs) : events_(needs.events) {}

    void visitHomepage() noexcept;

    /// An empty taxonomy is refused; of the elements, only the texts travel.
    void visitListingPage(const Array& taxonomy) noexcept;

    void visitProductDetailPage(const OrbinelProduct& product) noexcept;

    /// One event a valid product.
    void visitCartPage(const std::vector<OrbinelProduct>& products) noexcept;

private:
    const CommerceEvents& events_;
};

}  // namespace orbinel

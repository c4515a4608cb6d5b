#pragma once

#include <atomic>
#include <string_view>

#include "base/reports.hpp"

namespace orbinel {

/// Which kinds of device data the application allows to be collected. In memory only: every launch begins with the
/// initial values.
///
/// Threads: any.
class CollectionSwitches {
public:
    explicit CollectionSwitches(Reports& reports) : reports_(reports) {}

    // --- What the application calls; no gate. ---

    void enableIDFACollection(bool enabled) noexcept;
    void enableIpCollection(bool enabled) noexcept;
    void enableLocationCollection(bool enabled) noexcept;
    void enableCarrierCollection(bool enabled) noexcept;

    // --- What is stored, and asked by whoever collects. ---

    void saveIDFACollectionStatus(bool enabled) noexcept { idfa_ = enabled; }
    void saveCollectionIpStatus(bool enabled) noexcept { ip_ = enabled; }
    void saveCollectionLocationStatus(bool enabled) noexcept { location_ = enabled; }
    void saveCollectionCarrierStatus(bool enabled) noexcept { carrier_ = enabled; }

    // The backend is told of these two as "disabled": true where switched off.
    [[nodiscard]] bool getIpCollectionStatus() const noexcept { return !ip_; }
    [[nodiscard]] bool getLocationCollectionStatus() const noexcept { return !location_; }

    // True where switched on.
    [[nodiscard]] bool getIDFACollectionStatus() const noexcept { return idfa_; }
    [[nodiscard]] bool getCarrierCollectionStatus() const noexcept { return carrier_; }

private:
    void feed(std::string_view methodType, bool enabled) noexcept;

    Reports& reports_;
    std::atomic<bool> ip_{true};
    std::atomic<bool> location_{true};
    std::atomic<bool> carrier_{true};
    std::atomic<bool> idfa_{false};
};

}  // namespace orbinel

#include "privacy/collection_switches.hpp"

namespace orbinel {

void CollectionSwitches::enableIDFACollection(bool enabled) noexcept {
    saveIDFACollectionStatus(enabled);
    feed("enableIDFACollection", enabled);
}

void CollectionSwitches::enableIpCollection(bool enabled) noexcept {
    saveCollectionIpStatus(enabled);
    feed("enableIpCollection", enabled);
}

void CollectionSwitches::enableLocationCollection(bool enabled) noexcept {
    saveCollectionLocationStatus(enabled);
    feed("enableLocationCollection", enabled);
}

void CollectionSwitches::enableCarrierCollection(bool enabled) noexcept {
    saveCollectionCarrierStatus(enabled);
    feed("enableCarrierCollection", enabled);
}

void CollectionSwitches::feed(std::string_view methodType, bool enabled) noexcept {
    reports_.feed(methodType, [&] { return Dictionary{{"value", enabled}}; });
}

}  // namespace orbinel

#include "guide.hpp"

using orbinel::Orbinel;

namespace guide {

void respectPrivacy(bool processing, bool location) {
    Orbinel::setGDPRConsent(processing);  // after the initialisation, and always both
    Orbinel::setMobileGDPRConsent(processing);
    Orbinel::enableLocationCollection(location);  // after each launch
    Orbinel::enableIDFACollection(false);
}

}  // namespace guide

#include "guide.hpp"

using orbinel::Orbinel;

namespace guide {

void respectPrivacy(bool processing, bool location) {
    Orbinel::setGDPRConsent(processing);
    Orbinel::enableLocationCollection(location);  // after each launch
    Orbinel::enableIDFACollection(false);
}

}  // namespace guide

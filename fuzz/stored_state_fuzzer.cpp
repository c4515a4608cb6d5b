#include <array>

#include "fuzz/headless_launch.hpp"
#include "session/stored_keys.hpp"

namespace {

namespace keys = orbinel::keys;
using orbinel::Dictionary;
using orbinel::Orbinel;
using orbinel::Value;
using orbinel::fuzz::HeadlessLaunch;
using orbinel::fuzz::require;

constexpr std::array knownKeys{keys::appGroup,         keys::orbinelId,
                               keys::partnerName,      keys::udidCache,
                               keys::udidKeychain,     keys::firstRun,
                               keys::firstSession,     keys::sessionStartTime,
                               keys::offlineQueue,     keys::retryIdentityRequest,
                               keys::userIdentifiers,  keys::inappFrequency,
                               keys::pushEnabled,      keys::locationEnabled,
                               keys::hybridSdkVersion, keys::gdprConsent,
                               keys::mobileConsent,    keys::savedGdprConsent,
                               keys::debugCheck,       keys::autoIntegration,
                               keys::deviceLocation,   keys::recommendationEndpoints,
                               keys::placeholderLog,   keys::interactivePushSeen,
                               keys::carouselId,       keys::carouselCampId,
                               keys::carouselDeepLink, keys::carouselDeepLinkTimestamp,
                               keys::testContents};
constexpr std::string_view variable = "title";

void put(const Value& values, orbinel::platform::DefaultsStore& store) {
    const auto* dictionary = values.ifDictionary();
    if (dictionary == nullptr) return;
    for (const auto& [key, value] : *dictionary) store.set(key, value);
    store.synchronize();
}

void fill(const Dictionary& input, const orbinel::headless::HeadlessHost& host) {
    const std::array stores{host.defaults->standard(), host.defaults->appGroup(HeadlessLaunch::appGroup),
                            host.defaults->suite(keys::contentSuite)};
    if (const auto* everywhere = input.find("everywhere")) {
        for (const auto& store : stores) {
            for (const auto key : knownKeys) store->set(key, *everywhere);
            store->set(variable, *everywhere);
        }
    }
    put(input["defaults"], *stores[0]);
    put(input["app_group"], *stores[1]);
    put(input["contents"], *stores[2]);
    const auto archive = host.json->serialise(input["secure"], orbinel::platform::JsonStyle::compact);
    host.secureItems->store(keys::udidKeychain, keys::udidKeychain, archive.value_or("{"));
}

/// A session that reads what is stored.
void runSession(const HeadlessLaunch& launch, std::string_view event) {
    launch.becomeActive();
    (void)Orbinel::getContentStringWithName(variable, "", orbinel::OrbinelVariableTypeContent);
    (void)Orbinel::getContentIntWithName(variable, 1, orbinel::OrbinelVariableTypeContent);
    (void)Orbinel::getOrbinelID();
    Orbinel::getSmartRecommendationWithID(1, "en", "EUR", [](const Dictionary&) {});
    Orbinel::getCurrentUser().setName("Ada").login(orbinel::OrbinelIdentifiers().addEmail("ada@acme.com"));
    Orbinel::handlePushLogWithUserInfo(Dictionary{{"aps", Dictionary()}, {"source", "Orbinel"}, {"camp_id", 1}});
    Orbinel::tagEvent(event).build();
    launch.host.advance(6);  // beyond the time that a carousel's item is waited for
    launch.enterBackground();
}

}  // namespace

// Whatever earlier launches, other programs or a person left in the stores ({"everywhere": a value for each key,
// "defaults", "app_group", "contents": values by key, "secure": a value}), a launch goes through a session and a stop;
// and once the person consents, the next session is delivered.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto input = orbinel::fuzz::dictionaryOf(orbinel::fuzz::textOf(data, size));
    if (!input) return 0;
    HeadlessLaunch launch;
    fill(*input, launch.host);
    launch.launch();
    runSession(launch, "first_visit");

    launch.launch();
    Orbinel::setGDPRConsent(true);
    Orbinel::setMobileGDPRConsent(true);
    runSession(launch, "second_visit");
    require(launch.hasReceived("second_visit"));
    return 0;
}

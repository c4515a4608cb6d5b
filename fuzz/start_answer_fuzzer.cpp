#include <algorithm>
#include <charconv>

#include "fuzz/headless_launch.hpp"
#include "inapp/view_tags.hpp"

namespace {

using orbinel::Dictionary;
using orbinel::Orbinel;
using orbinel::Value;
using orbinel::fuzz::HeadlessLaunch;
using orbinel::fuzz::require;

constexpr std::size_t mostToTry = 8;  // of each kind of what an answer brings

/// Calls `use` with the first elements that are dictionaries.
template <typename Use>
void forEachDictionary(const Value& list, Use&& use) {
    const auto* elements = list.ifArray();
    for (std::size_t i = 0; elements != nullptr && i < std::min(elements->size(), mostToTry); ++i) {
        if (const auto* dictionary = (*elements)[i].ifDictionary()) use(*dictionary);
    }
}

void readContents(const Dictionary& answer) {
    forEachDictionary(answer["contents"], [](const Dictionary& content) {
        forEachDictionary(content["variables"], [](const Dictionary& variable) {
            const auto& name = variable["variable_name"].stringOrEmpty();
            (void)Orbinel::getContentStringWithName(name, "", orbinel::OrbinelVariableTypeContent);
            (void)Orbinel::getContentIntWithName(name, 1, orbinel::OrbinelVariableTypeElement);
            (void)Orbinel::getContentBoolWithName(name, true, orbinel::OrbinelVariableTypeContent);
            (void)Orbinel::getContentStringWithoutCache(name, "", orbinel::OrbinelVariableTypeContent);
            (void)Orbinel::getContentIntWithoutCache(name, 1, orbinel::OrbinelVariableTypeContent);
        });
    });
}

void askForRecommendations(const Dictionary& answer) {
    const auto* addresses = answer["smart_recommendations"].ifDictionary();
    if (addresses == nullptr) return;
    const auto product = Orbinel::createNewProductWithID("shoe", "Shoe", {"Shoes"}, "https://img.test", 9.5, "EUR");
    for (const auto& [key, address] : *addresses) {
        std::int32_t id = 0;
        std::from_chars(key.data(), key.data() + key.size(), id);
        Orbinel::getSmartRecommendationWithProduct(product, id, "en", [](const Dictionary&) {});
        Orbinel::clickSmartRecommendationProductWithID(id, product);
    }
}

/// Whatever is shown is loaded, and closed by the person.
void closeMessage(const HeadlessLaunch& launch) {
    const auto page = launch.host.views->page();
    if (page == nullptr || !page->isAlive()) return;
    page->respond();
    page->finish();
    launch.host.advance(1);
    (void)launch.host.views->tap(orbinel::kBUTTONVIEWTAG);
    launch.host.advance(1);
}

void triggerMessages(const Dictionary& answer, const HeadlessLaunch& launch) {
    closeMessage(launch);
    forEachDictionary(answer["inapps"], [&](const Dictionary& campaign) {
        Orbinel::tagEvent(campaign["trigger"].stringOrEmpty()).addParameterWithInt("price", 7).build();
        launch.host.settle();
        closeMessage(launch);
    });
}

}  // namespace

// Whatever answers a session start, what it brings can be used, the session is delivered where the answer did not
// switch the library off, and so is that of the next launch.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = orbinel::fuzz::textOf(data, size);
    const auto answer = orbinel::fuzz::dictionaryOf(text);
    HeadlessLaunch launch{std::string(text)};
    launch.launch();
    Orbinel::setGDPRConsent(true);
    launch.becomeActive();
    if (answer) {
        readContents(*answer);
        askForRecommendations(*answer);
        triggerMessages(*answer, launch);
    }
    Orbinel::tagEvent("first_visit").build();
    launch.enterBackground();
    require(launch.hasReceived("first_visit") || (answer && (*answer)["sdk_disabled"].truth()));

    launch.answersProperly = true;
    launch.launch();
    launch.becomeActive();
    Orbinel::tagEvent("second_visit").build();
    launch.enterBackground();
    require(launch.hasReceived("second_visit"));
    return 0;
}

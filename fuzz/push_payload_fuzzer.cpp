#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include "fuzz/headless_launch.hpp"

namespace {

using orbinel::Dictionary;
using orbinel::Orbinel;
using orbinel::fuzz::HeadlessLaunch;
using orbinel::fuzz::require;

constexpr int pushesOfOneLaunch = 64;

/// An application that is told of pushes, and a platform that opens addresses.
class Launch {
public:
    Launch() {
        auto bundle = application_.bundle();
        bundle.urlSchemes = {"acme"};
        application_.setBundle(bundle);
        launch_.launch();
        Orbinel::registerOrbinelCallbackWithSelector(&Launch::toldOf, std::weak_ptr(told_));
        Orbinel::setForegroundPushCallback([](int&, const Dictionary&) {}, std::weak_ptr(told_));
    }

    void receive(const Dictionary& push, const Dictionary& leftByExtension) {
        const auto group = launch_.host.defaults->appGroup(HeadlessLaunch::appGroup);
        for (const auto& [key, value] : leftByExtension) group->set(key, value);
        const int before = *told_;
        Orbinel::handlePushLogWithUserInfo(push);
        Orbinel::trackInteractiveLogWithUserInfo(push);
        launch_.host.advance(1);
        require(*told_ == before || Orbinel::getPushInfo(push));
        checkOpened();
    }

private:
    static void toldOf(int& count, const Dictionary& callback) {
        if (callback["type"] != 0) return;
        ++count;
        const auto* data = callback["data"].ifDictionary();
        require(callback["source"] == "Orbinel" && data != nullptr);
        for (const auto* key : {"aps", "camp_id", "camp_type", "variant_id", "inapp_test", "push_inapp", "source"}) {
            require(!data->contains(key));
        }
    }

    void checkOpened() {
        constexpr std::array<std::string_view, 5> permitted{"http", "https", "mailto", "tel", "acme"};
        const auto opened = application_.opened();
        for (; seen_ < opened.size(); ++seen_) {
            auto scheme = opened[seen_].url.substr(0, opened[seen_].url.find(':'));
            for (auto& c : scheme) c = static_cast<char>(c | 0x20);  // letters in lower case
            require(std::find(permitted.begin(), permitted.end(), scheme) != permitted.end());
        }
    }

    const HeadlessLaunch launch_;
    orbinel::headless::HeadlessApplication& application_ = *launch_.host.application;
    const std::shared_ptr<int> told_ = std::make_shared<int>(0);
    std::size_t seen_ = 0;
};

}  // namespace

// Whatever {"push": a payload, "extension": {what the notification extension left}} holds, it is handled: the
// application hears only of the vendor's pushes, without the library's own keys, and only permitted addresses are
// opened.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto input = orbinel::fuzz::dictionaryOf(orbinel::fuzz::textOf(data, size));
    const auto* push = input ? (*input)["push"].ifDictionary() : nullptr;
    if (push == nullptr) return 0;
    const auto* extension = (*input)["extension"].ifDictionary();

    static std::unique_ptr<Launch> launch;
    static int pushes = 0;
    if (pushes++ % pushesOfOneLaunch == 0) {
        launch = nullptr;  // before the next one begins
        launch = std::make_unique<Launch>();
    }
    launch->receive(*push, extension != nullptr ? *extension : Dictionary());
    return 0;
}

#include <string>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"
#include "inapp/template_bridge.hpp"

namespace orbinel::bench {
namespace {

/// A click that a page reports, of about a kilobyte.
std::string clickMessage() {
    std::string message = R"({"send_click_data":{"button":"buy","fields":[)";
    for (int i = 0; i < 12; ++i) {
        if (i > 0) message += ',';
        message += R"({"id":)" + std::to_string(i) +
                   R"(,"name":"field_of_the_form","value":"what was filled in","seconds":1.25})";
    }
    return message + "]}}";
}

/// As a page writes it: JSON's own characters escaped, letters and digits not.
std::string navigationWith(const std::string& message) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::string_view escaped = "{}[]\":, ";
    std::string url = "orbinelurl://";
    for (const char c : message) {
        if (escaped.find(c) == std::string_view::npos) {
            url += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        url += {'%', digits[byte >> 4U], digits[byte & 15U]};
    }
    return url;
}

class CountedClicks final : public InappLogging {
public:
    void addInappLog(std::int32_t) override {}
    void addControlGroupLog(const Dictionary&) override {}
    void addClickLog(const Dictionary& click) override { count += click.size(); }
    void logBlockedInAppMessage(const Dictionary&) override {}
    void logInAppMessageAction(std::string_view) override {}

    std::size_t count = 0;
};

/// The bridge beside a running library.
struct Bridge {
    explicit Bridge(World& owner) : world(owner) { store.logging.bind(clicks); }

    World& world;
    const platform::Services& services = world.services;
    CountedClicks clicks;
    PresentedInapp presented;
    NativeActions native{{world.reports, world.helper, world.ownLifetime, *services.scheduler, *services.application,
                          *services.notifications, *services.reviewPrompt, *services.pasteboard, *services.haptics}};
    UrlOpener urls{{world.reports, world.ownLifetime, *services.scheduler, *services.application}};
    ShakeDetector shakes{{world.reports, world.ownLifetime, *services.scheduler, *services.accelerometer}};
    TemplateMessages messages{{world.reports, world.session, *services.json, presented}};
    TemplateEvents events{{world.reports, world.helper, world.eventRecorder, presented, world.ownLifetime,
                           *services.json, *services.scheduler, *services.notificationCentre}};
    TemplateAttributes attributes{{world.reports, world.userAttributes, *services.json, *services.scheduler}};
    TemplateProducts products{{world.reports, world.productCreation, world.cartReminder, presented, *services.json}};
    TemplateAnswers answers{{world.reports, world.session, presented, *services.json}};
    OrbinelTemplateStore store{{world.reports, events, attributes, products, answers, messages, native, shakes, urls,
                                presented, world.ownLifetime, *services.json, *services.scheduler,
                                *services.notificationCentre}};
    TemplateBridge page{{world.reports, store, *services.json}};
};

void ParsedMessage1KB(benchmark::State& state) {
    RunningLibrary library;
    const auto message = clickMessage();
    for (auto _ : state) {
        auto parsed = library.world().services.json->parse(message);
        benchmark::DoNotOptimize(parsed);
    }
}

void BridgeMessage1KB(benchmark::State& state) {
    RunningLibrary library;
    Bridge bridge(library.world());
    const auto url = navigationWith(clickMessage());
    for (auto _ : state) bridge.page.processCustomScreenClicks(url);
    if (bridge.clicks.count == 0) state.SkipWithError("The click did not arrive.");
}

BENCHMARK(ParsedMessage1KB);
BENCHMARK(BridgeMessage1KB);

const RatioLine bridgeMessage({"message of a page of 1 KB, from navigation to action / parsing its JSON",
                               "BridgeMessage1KB", "ParsedMessage1KB", 10.0});

}  // namespace
}  // namespace orbinel::bench

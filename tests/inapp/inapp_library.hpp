#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "inapp/campaign_selection.hpp"
#include "inapp/inapp_logs.hpp"
#include "support/library_test.hpp"

namespace orbinel::testing {

/// Stands for everything that a chosen message is handed to.
class PretendedScreen final : public InappPresenter, public InappButtonClicks, public InappShakeDetector {
public:
    bool onScreen = false;
    bool portrait = true;
    std::vector<InappLayout> built;
    int shows = 0;
    int detectorsStopped = 0;
    std::function<void(const InappButton&)> onClick = [](const InappButton&) {};

    bool isInAppOnTheScreen() const noexcept override { return onScreen; }
    bool isOrientationPortrait() const noexcept override { return portrait; }
    void createInappAfterAppropriateDelaysWithType(const PresentedInapp::Record&, const InappLayout& layout) override {
        built.push_back(layout);
    }
    void showInapp() override { ++shows; }
    void inappButtonClicked(const InappButton& button) override { onClick(button); }
    void destroyShakeDetector() override { ++detectorsStopped; }
    bool isObserving() const noexcept override { return false; }
};

/// A started library whose campaigns are chosen by objects that the test holds.
class InappLibraryTest : public LibraryTest {
protected:
    struct Inapps {
        explicit Inapps(World& world)
            : store(world.reports),
              cap({world.reports, world.helper}),
              logs({world.reports, world.helper, world.session, world.eventRecorder, presented}),
              selection({world.reports, world.helper, store, cap, presented, logs}) {}

        PresentedInapp presented;
        OrbinelInapps store;
        FrequencyCap cap;
        InappLogs logs;
        CampaignSelection selection;
    };

    InappLibraryTest() { wire(); }
    ~InappLibraryTest() override { shutdown(); }  // while the objects of the test stand

    void relaunchWired() {
        shutdown();
        launch();
        wire();
    }

    /// Counts from now on as after the answer to a session start.
    void deliver(const Array& campaigns) {
        inapps->selection.setStartRequestCompleted(true);
        inapps->selection.inappToMemory(campaigns);
    }
    /// The ID of the message that was handed over last; 0 where none was since the last call.
    std::int64_t handedOver() {
        const auto record = inapps->presented.activeInapp();
        inapps->presented.clear();
        return record != nullptr ? (*record)["inapp_id"].integer().value_or(-1) : 0;
    }
    std::vector<std::string> statuses() {
        auto found = sinks.messages({"App ", "Other ", "Orientation ", "Frequency ", "Blocked in-app", "Can't"});
        sinks.clear();
        return found;
    }
    static SessionRecord record() {
        return world().session.read([](const SessionRecord& all) { return all; });
    }

    PretendedScreen screen;
    std::unique_ptr<Inapps> inapps;

private:
    void wire() {
        inapps = std::make_unique<Inapps>(world());
        inapps->selection.presenter.bind(screen);
        inapps->selection.buttonClicks.bind(screen);
        inapps->logs.shakeDetector.bind(screen);
        world().collaborators.campaigns.unbind();
        world().collaborators.campaigns.bind(inapps->selection);
        world().eventRecorder.campaigns.unbind();
        world().eventRecorder.campaigns.bind(inapps->selection);
        initialise();
    }
};

}  // namespace orbinel::testing

#pragma once

#include "inapp/kept_effects.hpp"

namespace orbinel::testing {

/// Stands for the screen that a chosen message is handed to.
class PretendedScreen final : public InappPresenter {
public:
    bool onScreen = false;
    bool portrait = true;
    std::vector<InappLayout> built;
    int shows = 0;

    bool isInAppOnTheScreen() const noexcept override { return onScreen; }
    bool isOrientationPortrait() const noexcept override { return portrait; }
    void createInappAfterAppropriateDelaysWithType(const PresentedInapp::Record&, const InappLayout& layout) override {
        built.push_back(layout);
    }
    void showInapp() override { ++shows; }
};

/// An initialised library whose messages are handed to the test.
class InappLibraryTest : public LibraryTest {
protected:
    InappLibraryTest() { wire(); }
    ~InappLibraryTest() override { shutdown(); }  // while the screen stands

    void relaunchWired() {
        relaunch();
        wire();
    }

    /// Counts from now on as after the answer to a session start.
    void deliver(const Array& campaigns) {
        world().campaignSelection.setStartRequestCompleted(true);
        world().campaignSelection.inappToMemory(campaigns);
    }
    /// The ID of the message that was handed over last; 0 where none was since the last call.
    std::int64_t handedOver() {
        const auto record = world().presentedInapp.activeInapp();
        world().presentedInapp.clear();
        return record != nullptr ? (*record)["inapp_id"].integer().value_or(-1) : 0;
    }
    std::vector<std::string> statuses() {
        auto found = sinks.messages({"App ", "Other ", "Orientation ", "Frequency ", "Blocked in-app", "Can't"});
        sinks.clear();
        return found;
    }

    PretendedScreen screen;

private:
    void wire() {
        rebind(world().campaignSelection.presenter, screen);
        initialise();
    }
};

}  // namespace orbinel::testing

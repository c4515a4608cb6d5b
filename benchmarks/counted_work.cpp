#include <cstdlib>
#include <iostream>
#include <string_view>

#include "benchmarks/running_library.hpp"
#include "benchmarks/typical_campaigns.hpp"

// What is done a thousand times under callgrind, which counts the same each time, whatever else the machine does; see
// count_instructions.sh.

namespace orbinel::bench {

/// The one function whose instructions are counted: a session's worth of events and the emptying of its record, or as
/// many choices of a campaign.
template <typename Work>
[[gnu::noinline]] void countedWork(Work&& work) {
    work();
}

namespace {

constexpr int atOnce = 100;
constexpr int times = 10;

void tagBesideOtherCampaigns(int campaigns) {
    RunningLibrary library;
    campaignsOfOtherEventsArrive(library.world(), campaigns);
    for (int i = 0; i < times; ++i) {
        countedWork([&] {
            for (int event = 0; event < atOnce; ++event) tagTypicalEvent(event);
            library.world().session.update([](SessionRecord& record) { record.custom_events = {}; });
        });
    }
}

void chooseAmong(int campaigns) {
    RunningLibrary library;
    OrbinelInapps inapps(library.world().reports);
    inapps.inappToMemory(typicalCampaigns(campaigns));
    for (int i = 0; i < times; ++i) {
        countedWork([&] {
            for (int choice = 0; choice < atOnce; ++choice) (void)chooseCampaign(inapps, library.world().reports);
        });
    }
}

}  // namespace
}  // namespace orbinel::bench

int main(int count, char** words) {
    const std::string_view work = count == 3 ? words[1] : "";
    char* end = nullptr;
    const long campaigns = count == 3 ? std::strtol(words[2], &end, 10) : -1;
    if ((work != "event" && work != "choice") || *end != '\0' || campaigns < 0 || campaigns > 1'000'000) {
        std::cerr << "Give the work, event or choice, and the number of campaigns, from 0 to 1000000.\n";
        return 2;
    }
    const auto run = work == "event" ? orbinel::bench::tagBesideOtherCampaigns : orbinel::bench::chooseAmong;
    run(static_cast<int>(campaigns));
}

#include <cstdlib>
#include <iostream>

#include "benchmarks/running_library.hpp"

namespace orbinel::bench {

/// The one function whose instructions are counted: a session's worth of events, and the emptying of its record.
[[gnu::noinline]] void countedEvents(World& world) {
    constexpr int eventsOfASession = 100;
    for (int i = 0; i < eventsOfASession; ++i) tagTypicalEvent(i);
    world.session.update([](SessionRecord& record) { record.custom_events = {}; });
}

}  // namespace orbinel::bench

/// Tags events beside so many campaigns that wait for others. For a run under callgrind, which counts the same each
/// time, whatever else the machine does; see count_instructions.sh.
int main(int count, char** words) {
    char* end = nullptr;
    const long campaigns = count == 2 ? std::strtol(words[1], &end, 10) : -1;
    if (end == nullptr || *end != '\0' || campaigns < 0 || campaigns > 1'000'000) {
        std::cerr << "Give the number of campaigns, from 0 to 1000000.\n";
        return 2;
    }
    orbinel::bench::RunningLibrary library;
    orbinel::bench::campaignsOfOtherEventsArrive(library.world(), static_cast<int>(campaigns));
    constexpr int sessions = 10;
    for (int i = 0; i < sessions; ++i) orbinel::bench::countedEvents(library.world());
}

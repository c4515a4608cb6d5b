#include "guide.hpp"

using orbinel::Orbinel;

namespace guide {

void eraseEverything(std::string& toldToThePerson) {
    Orbinel::eraseStoredDataWithCompletionHandler([&toldToThePerson](const std::optional<std::string>& problem) {
        toldToThePerson = problem ? "Not everything could be erased. Please try again." : "Everything is erased.";
        Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme");  // under new identifiers
    });
}

}  // namespace guide

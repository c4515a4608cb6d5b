#include "apps/orbinel/play/scenario_reader.hpp"
#include "fuzz/input.hpp"

// Whatever a scenario file holds, reading it gives steps that can be played, or one line that says what is wrong.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using orbinel::tool::readScenario;
    using orbinel::tool::Unusable;
    const auto read = readScenario(orbinel::fuzz::textOf(data, size), std::optional<std::string>("http://127.0.0.1:1"));
    if (const auto* unusable = std::get_if<Unusable>(&read)) {
        const std::string_view line(unusable->what());
        orbinel::fuzz::require(!line.empty() && line.find('\n') == std::string_view::npos);
    }
    return 0;
}

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "apps/orbinel/play/scenario_reader.hpp"

// Whatever a scenario file holds, reading it gives steps that can be played, or one line that says what is wrong.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using orbinel::tool::readScenario;
    using orbinel::tool::Unusable;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto read = readScenario(text, std::optional<std::string>("http://127.0.0.1:1"));
    if (const auto* unusable = std::get_if<Unusable>(&read)) {
        const std::string_view line(unusable->what());
        if (line.empty() || line.find('\n') != std::string_view::npos) std::abort();
    }
    return 0;
}

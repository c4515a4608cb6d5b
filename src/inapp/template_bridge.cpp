#include "inapp/template_bridge.hpp"

#include <utility>

#include "base/guard.hpp"
#include "inapp/template_payload.hpp"

namespace orbinel {

namespace {

constexpr std::size_t longestTemplateData = 16'384;  // bytes of a record; a page may repeat itself

}  // namespace

TemplateBridge::TemplateBridge(const Needs& needs) : reports_(needs.reports), store_(needs.store), json_(needs.json) {}

void TemplateBridge::processCustomScreenClicks(std::string_view url) noexcept {
    guarded(reports_, "-[OrbinelInapp processCustomScreenClicks:]", [&] {
        const auto payload = template_payload::decode(url);
        if (payload) {
            reports_.log(LogType::inapp, LogLevel::info, "Received data from WebView.", [&] {
                return Dictionary{{"template_data", payload->substr(0, longestTemplateData)}};
            });
        }
        const auto actions = payload ? read(*payload) : std::nullopt;
        if (!actions) {
            return reports_.log(LogType::inapp, LogLevel::error, "Received template datas couldn't be serialized.");
        }
        store_.processTemplateStoreURL(*actions);
    });
}

std::optional<Dictionary> TemplateBridge::read(const std::string& payload) const {
    auto parsed = json_.parse(payload);
    auto* value = std::get_if<Value>(&parsed);
    auto* actions = value != nullptr ? value->ifDictionary() : nullptr;
    return actions != nullptr ? std::optional(std::move(*actions)) : std::nullopt;
}

}  // namespace orbinel

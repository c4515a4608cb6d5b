#include "inapp/template_url.hpp"

#include "base/guard.hpp"
#include "base/url.hpp"

namespace orbinel {

std::optional<std::string> TemplateUrl::getTemplateURLFromContent(const Dictionary& content) noexcept {
    auto url = guarded(needs_.reports, "-[OrbinelInapp getTemplateURLFromContent]", std::string(),
                       [&] { return text(content); });
    needs_.reports.log(LogType::inapp, LogLevel::error, "Template URL is about to load.", [&] {
        return Dictionary{{"url", url}};
    });
    if (url.empty() || !hasLegalUrlCharacters(url)) return std::nullopt;
    return url;
}

std::string TemplateUrl::text(const Dictionary& content) {
    const auto udid = needs_.helper.getUdid().value_or("");
    const auto stored = needs_.identity.storedOrbinelId();
    const auto& person = needs_.identity.isOrbinelIdValid(stored) ? stored.stringOrEmpty() : udid;
    const auto language = needs_.application.bundle().preferredLocalisation.value_or("");
    return content["template_url"].stringOrEmpty() + "/" + udid + "/" + person + "/" + language;
}

}  // namespace orbinel

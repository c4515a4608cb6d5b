#include "user/identity_request.hpp"

#include <utility>

#include "base/utf8.hpp"
#include "user/device_attributes.hpp"

namespace orbinel {

namespace {

/// Whatever is no text, or none that could be sent back as it is, counts as no ID.
std::string idOf(const Value& answer) {
    const auto& text = answer.stringOrEmpty();
    return isValidUtf8(text) ? text : std::string();
}

}  // namespace

IdentityRequest::IdentityRequest(const Needs& needs)
    : reports_(needs.reports), session_(needs.session), sender_(needs.sender), endpoints_(needs.endpoints) {}

void IdentityRequest::send(const Dictionary& identifiers, const std::optional<std::string>& validOrbinelId,
                           IdentityAnswer success) {
    Dictionary payload{{"partner", session_.partnerName()},
                       {"identifiers", identifiers},
                       {"platform", OrbinelDeviceAttributes::getPlatform()}};
    if (validOrbinelId) payload.set("orbinel_id", *validOrbinelId);
    reports_.log(LogType::inapp, LogLevel::info,
                 validOrbinelId ? "Adding valid orbinel id to identity request."
                                : "Won't add invalid orbinel id to identity request.",
                 [] { return Dictionary(); });
    reports_.feed("orbinelIdentifierRequestJSON", [&] { return payload; });
    sender_.sendRequest(std::move(payload), endpoints_.getIdentity(),
                        [success = std::move(success)](const Value& answer) { success(idOf(answer)); });
}

}  // namespace orbinel

#include "inapp/template_payload.hpp"

#include "base/percent_decoding.hpp"

namespace orbinel::template_payload {

namespace {

std::string withoutScheme(std::string_view text) {
    std::string rest;
    rest.reserve(text.size());
    for (;;) {
        const auto found = text.find(scheme);
        rest += text.substr(0, found);
        if (found == std::string_view::npos) return rest;
        text.remove_prefix(found + scheme.size());
    }
}

}  // namespace

std::optional<std::string> decode(std::string_view url) {
    constexpr auto longestDecoded = longestText + scheme.size();
    std::string decoded;
    decoded.reserve(url.size() < longestDecoded ? url.size() : longestDecoded);
    while (!url.empty()) {
        if (decoded.size() == longestDecoded) return std::nullopt;
        decoded += takePercentDecodedByte(url);
    }
    auto payload = withoutScheme(decoded);
    return payload.size() <= longestText ? std::optional(std::move(payload)) : std::nullopt;
}

}  // namespace orbinel::template_payload

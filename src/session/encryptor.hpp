#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/reports.hpp"
#include "orbinel/platform/base64.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// Scrambles bodies for the endpoints that expect them so, and unscrambles what comes back.
///
/// The scheme is an obfuscation agreed with the backend, not a secret: the key is built at run time from the time
/// stamp that travels beside the body, and from two multipliers fixed at build time. A scrambled unit of zero is
/// carried as one zero byte.
///
/// Threads: any; no state.
class OrbinelEncryptor {
public:
    OrbinelEncryptor(Reports& reports, const platform::Base64& base64) : reports_(reports), base64_(base64) {}

    /// {"payload": scrambled text}; an empty dictionary when it fails.
    [[nodiscard]] Dictionary getEncryptedPayloadForData(std::string_view json,
                                                        std::string_view timestamp) const noexcept;

    /// The plain text; nothing for what is not base64 or does not yield UTF-8 text.
    [[nodiscard]] std::optional<std::string> decryptPayload(std::string_view payload,
                                                            std::string_view timestamp) const noexcept;

    /// The key for a time stamp: decimal digits, at least one.
    [[nodiscard]] static std::string getTheMagicalKey(std::string_view timestamp);

private:
    Reports& reports_;
    const platform::Base64& base64_;
};

}  // namespace orbinel

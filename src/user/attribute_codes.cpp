#include "user/attribute_codes.hpp"

#include <array>
#include <utility>

namespace orbinel::attribute_codes {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 8> longNames{{{SURNAME, "surname"},
                                                                                  {AGE, "age"},
                                                                                  {EMAIL_OPTIN, "email_optin"},
                                                                                  {SMS_OPTIN, "sms_optin"},
                                                                                  {LANGUAGE, "language"},
                                                                                  {FACEBOOK_ID, "facebook_id"},
                                                                                  {TWITTER_ID, "twitter_id"},
                                                                                  {UUID, "unique_user_id"}}};

}  // namespace

std::string_view longNameOf(std::string_view code) noexcept {
    for (const auto& [known, name] : longNames) {
        if (known == code) return name;
    }
    return code;
}

}  // namespace orbinel::attribute_codes

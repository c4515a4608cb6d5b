#pragma once

#include <optional>
#include <string>

namespace orbinel {

/// The type of an activity that continues on a web page.
inline constexpr const char* browsingWebActivityType = "NSUserActivityTypeBrowsingWeb";

/// What a person was doing elsewhere and continues in this application.
struct UserActivity {
    std::string type = browsingWebActivityType;
    std::optional<std::string> webpageUrl;  // RFC 3986; absent where the activity has no page
};

}  // namespace orbinel

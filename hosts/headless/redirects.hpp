#pragma once

#include <optional>
#include <string_view>

#include "orbinel/platform/http.hpp"

namespace orbinel::headless {

/// Whether a client could open a connection for the URL: absolute, http or https, with a host.
[[nodiscard]] bool isUsableUrl(std::string_view url);

/// The request that the response leads to, the same but for its URL; nothing where it is no redirect.
[[nodiscard]] std::optional<platform::HttpRequest> redirected(const platform::HttpRequest& request,
                                                              const platform::HttpResponse& response);

}  // namespace orbinel::headless

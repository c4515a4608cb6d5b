#pragma once

#include <string>
#include <vector>

#include "apps/orbinel/backend/request_log.hpp"

namespace orbinel::tool {

enum class BodyWanted { no, yes };

/// The requests as the JSON array that tools, tests and the inspector page read. Bytes that are not UTF-8 are replaced.
[[nodiscard]] std::string requestsAsJson(const std::vector<std::shared_ptr<const ReceivedRequest>>& requests,
                                         BodyWanted body = BodyWanted::yes);

/// One line for a terminal, without its end; what a sender wrote cannot move the cursor.
[[nodiscard]] std::string requestAsLine(const ReceivedRequest& request);

}  // namespace orbinel::tool

#pragma once

#include <string>

#include "apps/orbinel/backend/reply.hpp"

namespace orbinel::tool {

/// Answers a request for recommended products from the content of recommendations.json.
///
/// `query` is what stands behind the question mark: "id" names the campaign; "currency", "filter", "categories" and
/// "product" choose among its products. A placeholder that was not filled in, and a blank, chooses nothing. An unknown
/// campaign is refused with 404, what cannot be read with 400.
[[nodiscard]] Reply recommend(const std::string& query, const std::string& file);

}  // namespace orbinel::tool

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbinel::tool {

/// Which categories a recommended product has to be of.
struct CategoryFilter {
    std::vector<std::string> wanted;    // one of these, unless there are none
    std::vector<std::string> unwanted;  // and none of these

    [[nodiscard]] bool holds(const std::vector<std::string>& categories) const;
};

/// Reads "[category][=][Mugs]*[category][=][Kitchen]"; the operator may be "=" or "!=". Nothing where it cannot be
/// read.
[[nodiscard]] std::optional<CategoryFilter> readCategoryFilter(std::string_view text);

}  // namespace orbinel::tool

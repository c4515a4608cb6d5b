#include "apps/orbinel/backend/category_filter.hpp"

#include <glib.h>

#include <algorithm>

namespace orbinel::tool {
namespace {

constexpr std::string_view field = "[category][";

bool contains(const std::vector<std::string>& categories, const std::string& category) {
    return std::find(categories.begin(), categories.end(), category) != categories.end();
}

/// One "[category][=][Mugs]". False where it is none.
bool readSegment(std::string_view segment, CategoryFilter& filter) {
    if (segment.size() < field.size() || g_ascii_strncasecmp(segment.data(), field.data(), field.size()) != 0) {
        return false;
    }
    segment.remove_prefix(field.size());
    const auto between = segment.find("][");
    if (between == std::string_view::npos || !segment.ends_with(']') || segment.size() < between + 3) return false;
    const auto relation = segment.substr(0, between);
    std::string category(segment.substr(between + 2, segment.size() - between - 3));
    if (relation != "=" && relation != "!=") return false;
    // A product that is made of identifiers alone has a blank for a category.
    if (category.find_first_not_of(' ') == std::string::npos) return true;
    (relation == "=" ? filter.wanted : filter.unwanted).push_back(std::move(category));
    return true;
}

}  // namespace

bool CategoryFilter::holds(const std::vector<std::string>& categories) const {
    const auto isOfIt = [&](const std::string& category) { return contains(categories, category); };
    return (wanted.empty() || std::any_of(wanted.begin(), wanted.end(), isOfIt)) &&
           std::none_of(unwanted.begin(), unwanted.end(), isOfIt);
}

std::optional<CategoryFilter> readCategoryFilter(std::string_view text) {
    constexpr std::string_view between = "]*[";
    CategoryFilter filter;
    while (!text.empty()) {
        const auto at = text.find(between);
        const auto end = at == std::string_view::npos ? text.size() : at + 1;
        if (!readSegment(text.substr(0, end), filter)) return std::nullopt;
        text.remove_prefix(at == std::string_view::npos ? end : end + 1);
    }
    return filter;
}

}  // namespace orbinel::tool

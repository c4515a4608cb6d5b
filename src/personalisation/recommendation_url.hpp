#pragma once

#include <string>
#include <string_view>

#include "orbinel/value.hpp"

/// Makes the address of a recommendation request from the template that the backend gives for it.
///
/// A template holds "{language}", "{currency}", "{category}" and "{productID}", and segments that filter by category:
/// "[category][=][{category}]", with one to three characters of an operator. Time is linear in the texts given and the
/// result; a text that would grow beyond 1 MiB is refused with an exception (std::length_error).
namespace orbinel::recommendation_url {

/// Replaces every occurrence, from left to right and without looking at what was put in.
[[nodiscard]] std::string replaceAll(std::string_view text, std::string_view placeholder, std::string_view content);

/// Repeats every filter segment once for each category, with that category filled in, joined with "*"; without
/// categories it becomes empty. The segment's words are found in any letter case, "{category}" in it is filled only as
/// it is written here.
[[nodiscard]] std::string checkCategoryFilter(std::string_view url, const Array& categories);

/// The categories as a JSON array of texts; quotes inside a category are not escaped.
[[nodiscard]] std::string categoryText(const Array& categories);

}  // namespace orbinel::recommendation_url

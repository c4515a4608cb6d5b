#include "personalisation/recommendation_url.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <utility>

#include "base/ascii.hpp"
#include "events/data_types.hpp"

namespace orbinel::recommendation_url {

namespace {

constexpr std::size_t longestText = std::size_t{1} << 20U;

void append(std::string& text, std::string_view more) {
    if (more.size() > longestText - text.size()) throw std::length_error("A recommendation's URL is too long.");
    text += more;
}

// --- Filter segments ---

constexpr std::string_view segmentHead = "[category][";
constexpr std::string_view segmentTail = "][{category}]";
constexpr std::size_t longestOperator = 3;  // characters

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

/// How many bytes the character has that the text begins with; 0 at the end of a line, which no operator goes beyond.
std::size_t lengthOfCharacter(std::string_view text) {
    for (const std::string_view lineEnd : {"\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029"}) {
        if (text.starts_with(lineEnd)) return 0;
    }
    constexpr std::size_t longest = 4;
    std::size_t length = text.empty() ? 0 : 1;
    while (length > 0 && length < std::min(longest, text.size()) && continuesCharacter(text[length])) ++length;
    return length;
}

/// The length of the segment that the text begins with, or nothing. Where an operator ends is never in doubt: its end
/// is followed by a tail that cannot begin twice within so few characters.
std::optional<std::size_t> lengthOfSegment(std::string_view text) {
    if (!ascii::beginsWith(text, segmentHead)) return std::nullopt;
    auto position = segmentHead.size();
    for (std::size_t characters = 0; characters < longestOperator; ++characters) {
        const auto length = lengthOfCharacter(text.substr(position));
        if (length == 0) return std::nullopt;
        position += length;
        if (ascii::beginsWith(text.substr(position), segmentTail)) return position + segmentTail.size();
    }
    return std::nullopt;
}

void appendSegments(std::string& url, std::string_view segment, const Array& categories) {
    for (bool first = true; const auto& category : categories) {
        if (!std::exchange(first, false)) append(url, "*");
        append(url, replaceAll(segment, "{category}", category.stringOrEmpty()));
    }
}

}  // namespace

std::string replaceAll(std::string_view text, std::string_view placeholder, std::string_view content) {
    std::string replaced;
    for (;;) {
        const auto found = text.find(placeholder);
        append(replaced, text.substr(0, found));
        if (found == std::string_view::npos) return replaced;
        append(replaced, content);
        text.remove_prefix(found + placeholder.size());
    }
}

std::string checkCategoryFilter(std::string_view url, const Array& categories) {
    const auto texts = makeArrayValid(categories);
    std::string expanded;
    std::size_t copied = 0;
    for (auto at = url.find('['); at != std::string_view::npos; at = url.find('[', at)) {
        const auto length = lengthOfSegment(url.substr(at));
        if (!length) {
            ++at;
            continue;
        }
        append(expanded, url.substr(copied, at - copied));
        appendSegments(expanded, url.substr(at, *length), texts);
        at += *length;
        copied = at;
    }
    append(expanded, url.substr(copied));
    return expanded;
}

std::string categoryText(const Array& categories) {
    std::string text = "[";
    for (bool first = true; const auto& category : makeArrayValid(categories)) {
        append(text, std::exchange(first, false) ? "\"" : ",\"");
        append(text, category.stringOrEmpty());
        append(text, "\"");
    }
    return text + "]";
}

}  // namespace orbinel::recommendation_url

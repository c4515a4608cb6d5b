#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/url.hpp"
#include "orbinel/value.hpp"
#include "personalisation/recommendation_url.hpp"

// Whatever template a backend sends, and whatever a product's categories are (one a line after the first), the address
// is made in bounded time and space, and is of legal characters only.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    namespace url_of = orbinel::recommendation_url;
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const auto nextLine = [&rest] {
        const auto line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : rest.size());
        return line;
    };
    const std::string address(nextLine());
    orbinel::Array categories;
    while (!rest.empty()) categories.emplace_back(nextLine());
    try {
        auto url = url_of::checkCategoryFilter(address, categories);
        url = url_of::replaceAll(url, "{category}", url_of::categoryText(categories));
        url = orbinel::percentEscaped(url);
        (void)orbinel::isLegalWebUrl(url);
        if (orbinel::percentEscaped(url) != url) std::abort();
    } catch (const std::length_error&) {  // refused, as the header says
    }
    return 0;
}

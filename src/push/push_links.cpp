#include "push/push_links.hpp"

#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <utility>

#include "base/guard.hpp"
#include "push/push_info.hpp"

namespace orbinel {

namespace {

constexpr std::chrono::milliseconds delay{1000};
constexpr std::array linkKeys{push_keys::internalLink, push_keys::externalLink, push_keys::urlSchemeLink};

Dictionary linksOf(const Dictionary& pushInfo) {
    Dictionary links;
    for (const auto key : linkKeys) {
        if (!pushInfo[key].stringOrEmpty().empty()) links.set(key, pushInfo[key]);
    }
    return links;
}

}  // namespace

PushLinks::PushLinks(const Needs& needs)
    : reports_(needs.reports),
      urls_(needs.urls),
      screen_(needs.screen),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler) {}

void PushLinks::openBrowser(const Dictionary& pushInfo) noexcept {
    guarded(reports_, "-[OrbinelHelper openBrowser:]", [&] {
        auto links = linksOf(pushInfo);
        if (links.empty()) return;
        const auto place = waiting_.open();
        waiting_.keep(place,
                      scheduler_.postMainAfter(delay, lifetime_.whileAlive([this, place, links = std::move(links)] {
                          handlePushUrlType(links);
                          waiting_.close(place);
                      })));
    });
}

void PushLinks::handlePushUrlType(const Dictionary& pushInfo) noexcept {
    guarded(reports_, "-[OrbinelHelper handlePushUrlType:]", [&] {
        const auto links = linksOf(pushInfo);
        if (links.empty()) return;
        const auto& [key, url] = *links.begin();
        if (key == push_keys::internalLink) return urls_.openInternally(url.stringOrEmpty(), screen_);
        urls_.openUrl(url.stringOrEmpty(), {});
    });
}

}  // namespace orbinel

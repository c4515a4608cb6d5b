#include "tools/message_center.hpp"

#include <utility>

#include "base/guard.hpp"

namespace orbinel {

namespace {

constexpr const char* operation = "+[Orbinel getMessageCenterDataWithLimit:startDate:endDate:success:]";
constexpr const char* feedName = "getMessageCenterData";

/// The fraction is dropped.
Value wholeSeconds(Date date) { return Value(date.secondsSince1970).integer(); }

}  // namespace

MessageCenter::MessageCenter(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      identity_(needs.identity),
      endpoints_(needs.endpoints),
      sender_(needs.sender),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler) {}

void MessageCenter::getMessageCenterData(std::int32_t limit, std::optional<Date> startDate, std::optional<Date> endDate,
                                         Callback success) noexcept {
    guarded(reports_, operation, [&] {
        const bool usable = startDate && endDate && startDate->secondsSince1970 < endDate->secondsSince1970;
        auto payload = usable ? makePayload(limit, {*startDate, *endDate}) : std::nullopt;
        if (!payload) return call(success, {});
        reports_.feedToPanel(feedName, [&] { return *payload; });
        sender_.sendRequest(std::move(*payload), endpoints_.getMessageCenterData(),
                            [this, success = std::move(success)](Value answer) {
                                if (!answer.isAbsent()) handOver(std::move(answer), success);
                            });
    });
}

std::optional<Dictionary> MessageCenter::makePayload(std::int32_t limit, const Period& period) {
    const auto partnerName = session_.partnerName();
    const auto udid = helper_.getUdid().value_or(std::string());
    if (partnerName.empty() || udid.empty()) return std::nullopt;
    Dictionary payload{{"partner_name", partnerName}, {"udid", udid}};
    const auto orbinelId = identity_.getOrbinelID();
    if (!orbinelId) return payload;  // the backend's contract: nothing follows a value that is missing
    payload.set("orbinel_id", *orbinelId);
    payload.set("start_date", wholeSeconds(period.start));
    payload.set("end_date", wholeSeconds(period.end));
    payload.set("limit", limit);
    return payload;
}

void MessageCenter::handOver(Value answer, const Callback& success) {
    auto* array = answer.ifArray();
    auto messages = array != nullptr ? std::move(*array) : Array();
    reports_.feed(feedName, [&] { return Dictionary{{"data", messages}}; });
    scheduler_.postMain(
        lifetime_.whileAlive([this, success, messages = std::move(messages)] { call(success, messages); }));
}

void MessageCenter::call(const Callback& success, const Array& messages) noexcept {
    if (!success) return;
    guarded(reports_, operation, [&] { success(messages); });
}

}  // namespace orbinel

#include "inapp/template_values.hpp"

#include <chrono>

#include "base/ascii.hpp"
#include "base/value_text.hpp"

namespace orbinel::template_values {

namespace {

// --- Moments ---

constexpr std::string_view momentForm = "####-##-##T##:##:##.###Z";

bool hasFormOfMoment(std::string_view text) noexcept {
    if (text.size() != momentForm.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (momentForm[i] == '#' ? !ascii::isDigit(text[i]) : text[i] != momentForm[i]) return false;
    }
    return true;
}

int digits(std::string_view text, std::size_t at, std::size_t count) noexcept {
    int number = 0;
    for (const char c : text.substr(at, count)) number = number * 10 + (c - '0');
    return number;
}

/// Seconds since 1970, were the digits those of UTC; nothing where there is no such day or time.
std::optional<double> secondsInUtc(const platform::LocalTime& time) noexcept {
    using namespace std::chrono;
    const year_month_day day{year(time.year), month(static_cast<unsigned>(time.month)),
                             std::chrono::day(static_cast<unsigned>(time.day))};
    if (!day.ok() || time.hour > 23 || time.minute > 59 || time.second > 59) return std::nullopt;
    const auto moment =
        sys_days(day) + hours(time.hour) + minutes(time.minute) + seconds(time.second) + milliseconds(time.millisecond);
    return duration<double>(moment.time_since_epoch()).count();
}

platform::LocalTime timeOf(std::string_view text) noexcept {
    return {digits(text, 0, 4),  digits(text, 5, 2),  digits(text, 8, 2), digits(text, 11, 2),
            digits(text, 14, 2), digits(text, 17, 2), digits(text, 20, 3)};
}

/// The moment at which the device's clock on the wall shows these digits. The zone's offset is taken near that moment,
/// and again at the moment that this gives, for the days on which the offset changes.
std::optional<Date> momentOf(std::string_view text, const platform::Scheduler& scheduler) noexcept {
    const auto shown = secondsInUtc(timeOf(text));
    if (!shown) return std::nullopt;
    double moment = *shown;
    for (int pass = 0; pass < 2; ++pass) {
        const auto shownThen = secondsInUtc(scheduler.localTime(moment));
        if (!shownThen) return std::nullopt;
        moment += *shown - *shownThen;
    }
    return Date{moment};
}

}  // namespace

std::string textOf(const Value& value, const platform::Json& json) {
    if (const auto* text = value.ifString()) return *text;
    if (const auto* boolean = value.ifBoolean()) return *boolean ? "1" : "0";
    if (value.isNumber()) return orbinel::textOf(value);
    if (value.ifArray() == nullptr && value.ifDictionary() == nullptr) return {};
    return json.serialise(value, platform::JsonStyle::compact).value_or(std::string());
}

std::optional<Date> dateOf(const Value& value, const platform::Scheduler& scheduler) {
    if (const auto number = value.number()) return Date{*number};
    const auto* text = value.ifString();
    return text != nullptr && hasFormOfMoment(*text) ? momentOf(*text, scheduler) : std::nullopt;
}

std::optional<Descriptor> descriptorOf(const Value& value) noexcept {
    const auto* fields = value.ifDictionary();
    if (fields == nullptr) return std::nullopt;
    const auto* key = (*fields)["key"].ifString();
    const auto* content = fields->find("value");
    if (key == nullptr || content == nullptr || content->isNull()) return std::nullopt;
    return Descriptor{(*fields)["type"].stringOrEmpty(), *key, *content};
}

}  // namespace orbinel::template_values

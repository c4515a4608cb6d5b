#include "apps/orbinel/backend/messages.hpp"

#include <cstdint>
#include <optional>
#include <variant>

#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/backend/payload_reader.hpp"
#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

struct Period {
    std::optional<std::int64_t> start;
    std::optional<std::int64_t> end;

    [[nodiscard]] bool holds(const rapidjson::Value& message) const {
        if (!message.IsObject()) return true;
        const auto sentAt = message.FindMember("sent_at");
        if (sentAt == message.MemberEnd() || !sentAt->value.IsNumber()) return true;
        const double at = sentAt->value.GetDouble();
        return (!start || at >= static_cast<double>(*start)) && (!end || at <= static_cast<double>(*end));
    }
};

}  // namespace

SelectedMessages selectMessages(const rapidjson::Value& payload, const std::string& file) {
    const auto parsed = parseJson(file);
    const auto* messages = std::get_if<rapidjson::Document>(&parsed);
    if (messages == nullptr || !messages->IsArray()) return {file, {}};

    PayloadReader reader(payload);
    const Period period{reader.integer("start_date"), reader.integer("end_date")};
    const auto limit = reader.integer("limit").value_or(INT64_MAX);
    std::int64_t count = 0;
    auto json = jsonOf([&](JsonWriter& writer) {
        writer.StartArray();
        for (const auto& message : messages->GetArray()) {
            if (count >= limit) break;
            if (!period.holds(message)) continue;
            message.Accept(writer);
            ++count;
        }
        writer.EndArray();
    });
    return {std::move(json), std::to_string(count) + " of " + std::to_string(messages->Size()) + " messages"};
}

}  // namespace orbinel::tool

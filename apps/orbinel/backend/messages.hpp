#pragma once

#include <rapidjson/document.h>

#include <string>

namespace orbinel::tool {

struct SelectedMessages {
    std::string json;
    std::string note;  // "2 of 5 messages"; empty where the file's content is no list
};

/// The messages of the answer file that a message center request asks for: those whose "sent_at" lies from its
/// "start_date" to its "end_date", both included, and of these the first "limit". What the request does not name does
/// not choose; messages without "sent_at" are of every time. Content that is no list is handed on as it stands.
[[nodiscard]] SelectedMessages selectMessages(const rapidjson::Value& payload, const std::string& file);

}  // namespace orbinel::tool

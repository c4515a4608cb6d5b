#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "apps/orbinel/decode/scrambling.hpp"
#include "tests/apps/tool_process.hpp"
#include "tests/linux/temporary_directory.hpp"

namespace orbinel::test {

inline constexpr const char* stop = "/api/v3/session/stop";
inline constexpr const char* start = "/api/v3/session/start";
inline constexpr const char* identity = "/api/identity/v3/get";
inline constexpr const char* messages = "/api/message_center/v2/sdk/get";
inline constexpr const char* consentSet = "/api/v1/privacy/gdpr/consent/set";
inline constexpr const char* consentGet = "/api/v1/privacy/gdpr/consent/get";
inline constexpr const char* timestamp = "1767225690";

inline rapidjson::Document parsed(const std::string& text) {
    rapidjson::Document document;
    document.Parse(text.data(), text.size());
    EXPECT_FALSE(document.HasParseError()) << text;
    return document;
}

inline std::string compact(const rapidjson::Value& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return buffer.GetString();
}

inline std::string envelope(const std::string& json) {
    return "{\"payload\":\"" + tool::scramble(json, timestamp) + "\"}";
}

inline httplib::Headers usualHeaders() { return {{"ts", timestamp}, {"X-Requested-With", "acme"}}; }

/// A backend of the test's own on a free port, whose answers and pages lie in an empty directory, or where its words
/// say.
class Backend : public testing::Test {
protected:
    Backend() { begin({"--answers", answers_.string(), "--templates", answers_.string()}); }
    explicit Backend(std::vector<std::string> words) { begin(std::move(words)); }

    void begin(std::vector<std::string> words) {
        words.insert(words.begin(), {"backend", "--port", "0"});
        tool_.emplace(std::move(words));
        const auto line = tool_->firstLine();
        EXPECT_THAT(line, testing::MatchesRegex("listening on http://127\\.0\\.0\\.1:[0-9]+"));
        origin_ = line.substr(line.rfind(' ') + 1);
    }

    httplib::Result post(const std::string& path, const std::string& body, httplib::Headers headers = usualHeaders()) {
        return httplib::Client(origin_).Post(path, headers, body, "application/json");
    }

    rapidjson::Document received(const std::string& query = "") {
        const auto response = httplib::Client(origin_).Get("/inspect/requests" + query);
        return parsed(response ? response->body : "[]");
    }

    /// Without the library's own taking apart of what looks like a query.
    httplib::Result get(const std::string& target, const httplib::Headers& headers = usualHeaders()) {
        return httplib::Client(origin_).Get(target, headers);
    }

    rapidjson::Document remembered(const std::string& name) { return parsed(get("/inspect/" + name)->body); }

    rapidjson::Document last() {
        const auto requests = received();
        rapidjson::Document request;
        request.CopyFrom(requests[requests.Size() - 1], request.GetAllocator());
        return request;
    }

    std::string lastSummary() { return last()["summary"].GetString(); }

    /// The status that the inspector's own interface answers with.
    int put(const std::string& path, const std::string& json) {
        return httplib::Client(origin_).Put("/inspect/" + path, json, "application/json")->status;
    }
    int remove(const std::string& path) { return httplib::Client(origin_).Delete("/inspect/" + path)->status; }
    int override(const std::string& json) { return put("answer", json); }

    void writeAnswer(const std::string& file, const std::string& text) { std::ofstream(answers_ / file) << text; }

    /// Ends the backend and gives all that it printed.
    std::string end() {
        tool_->signal(SIGTERM);
        EXPECT_EQ(tool_->wait(), 0);
        return tool_->out();
    }

    orbinel::hosts::TemporaryDirectory directory_;
    const std::filesystem::path answers_ = directory_.path();
    std::string origin_;
    std::optional<ToolProcess> tool_;
};

}  // namespace orbinel::test

#include "apps/orbinel/backend/wizard_connections.hpp"

#include <map>
#include <string_view>
#include <vector>

#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/backend/payload_reader.hpp"
#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

constexpr std::size_t maxTokens = 1'000;
constexpr std::size_t maxTokenLength = 500;
constexpr std::size_t maxAttributes = 64'000;  // bytes of one connection's
constexpr std::size_t maxFeeds = 10'000;
constexpr std::size_t maxFeedBytes = 64'000'000;

std::string memberAsJson(const rapidjson::Value& payload, const char* name) {
    const auto* object = PayloadReader(payload).object(name);
    return object == nullptr ? "{}" : compactJson(*object);
}

}  // namespace

std::string tokenOf(const std::string* authorization) {
    constexpr std::string_view scheme = "Bearer ";
    if (authorization == nullptr || !authorization->starts_with(scheme)) return {};
    auto token = authorization->substr(scheme.size());
    return token.size() > maxTokenLength ? std::string() : token;
}

WizardConnections::WizardConnections() : connections_(maxTokens), feeds_(maxFeeds, maxFeedBytes) {}

void WizardConnections::connect(const std::string& token, const rapidjson::Value& payload) {
    Connection connection{now(), true, shortened(PayloadReader(payload).text("udid"), maxTokenLength),
                          memberAsJson(payload, "orbinel_attributes")};
    if (connection.attributes.size() > maxAttributes) connection.attributes = "{}";
    const MutexLock lock(mutex_);
    connections_.at(token) = std::move(connection);
}

bool WizardConnections::feed(const std::string& token, const rapidjson::Value& payload) {
    Feed feed{now(), token, shortened(PayloadReader(payload).text("method"), maxTokenLength),
              memberAsJson(payload, "data")};
    const auto bytes = sizeof(Feed) + feed.data.size();
    const MutexLock lock(mutex_);
    if (openConnection(token) == nullptr) return false;
    feeds_.add(std::move(feed), bytes);
    return true;
}

bool WizardConnections::disconnect(const std::string& token) {
    const MutexLock lock(mutex_);
    auto* connection = openConnection(token);
    if (connection == nullptr) return false;
    connection->open = false;
    return true;
}

WizardConnections::Connection* WizardConnections::openConnection(const std::string& token) {
    auto* connection = connections_.find(token);
    return connection != nullptr && connection->open ? connection : nullptr;
}

std::string WizardConnections::asJson() const {
    const MutexLock lock(mutex_);
    std::map<std::string_view, std::vector<const Feed*>> byToken;
    feeds_.forEach([&](const Feed& feed) { byToken[feed.token].push_back(&feed); });
    return jsonOf(
        [&](JsonWriter& writer, const auto& connections) {
            writer.StartArray();
            connections.forEach([&](const std::string& token, const Connection& connection) {
                writer.StartObject();
                writeMember(writer, "token", token);
                writer.Key("connected");
                writer.Bool(connection.open);
                writer.Key("at");
                writer.Double(connection.at);
                writeMember(writer, "udid", connection.device);
                writer.Key("attributes");
                writeJson(writer, connection.attributes);
                writer.Key("feeds");
                writer.StartArray();
                for (const auto* feed : byToken[token]) {
                    writer.StartObject();
                    writer.Key("at");
                    writer.Double(feed->at);
                    writeMember(writer, "method", feed->method);
                    writer.Key("data");
                    writeJson(writer, feed->data);
                    writer.EndObject();
                }
                writer.EndArray();
                writer.EndObject();
            });
            writer.EndArray();
        },
        connections_);
}

void WizardConnections::clear() {
    const MutexLock lock(mutex_);
    connections_.clear();
    feeds_.clear();
}

}  // namespace orbinel::tool

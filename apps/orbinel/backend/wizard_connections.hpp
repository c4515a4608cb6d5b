#pragma once

#include <rapidjson/document.h>

#include <string>

#include "apps/orbinel/backend/bounded.hpp"
#include "apps/orbinel/backend/inspectable.hpp"
#include "base/mutex.hpp"

namespace orbinel::tool {

/// What devices told the integration wizard, by the token of their connection.
///
/// Threads: any. Bounds: 1,000 tokens of at most 500 bytes; 10,000 feeds of 64 MB in all, what came first goes first.
class WizardConnections final : public Inspectable {
public:
    WizardConnections();

    /// Opens the connection of a token, again where it had ended; its feeds stay.
    void connect(const std::string& token, const rapidjson::Value& payload);

    /// Takes a feed. False without an open connection.
    [[nodiscard]] bool feed(const std::string& token, const rapidjson::Value& payload);

    /// Ends the connection. False where none is open.
    [[nodiscard]] bool disconnect(const std::string& token);

    /// Connections with their feeds.
    [[nodiscard]] std::string asJson() const override;
    void clear() override;

private:
    struct Connection {
        double at = 0;  // of the last `connect`
        bool open = false;
        std::string device;
        std::string attributes;  // JSON
    };
    struct Feed {
        double at;
        std::string token;
        std::string method;
        std::string data;  // JSON
    };

    Connection* openConnection(const std::string& token) ORBINEL_REQUIRES(mutex_);

    mutable Mutex mutex_;
    BoundedMap<Connection> connections_ ORBINEL_GUARDED_BY(mutex_);
    BoundedList<Feed> feeds_ ORBINEL_GUARDED_BY(mutex_);
};

/// The token of an Authorization header, "Bearer TOKEN"; empty where it has none or an overlong one.
[[nodiscard]] std::string tokenOf(const std::string* authorization);

}  // namespace orbinel::tool

#include "session/endpoints.hpp"

#include <gtest/gtest.h>

namespace orbinel::testing {
namespace {

TEST(Endpoints, StandOnTheOriginInForce) {
    OrbinelEndpoints endpoints;
    EXPECT_EQ(endpoints.getConfig(), "https://api.orbinel.example/api/v3/session/start");
    endpoints.setCustomEndpoint("https://x.test");
    EXPECT_EQ(endpoints.getConfig(), "https://x.test/api/v3/session/start");
    EXPECT_EQ(endpoints.logAPIv2(), "https://x.test/api//logging/sdk/v2");  // the backend has both slashes
    EXPECT_EQ(OrbinelEndpoints::logAPI(), "https://api.orbinel.example/api/logging/sdk/v1");

    endpoints.setCustomEndpoint(std::nullopt);
    EXPECT_EQ(endpoints.getConfig(), "/api/v3/session/start");
    endpoints.setCustomEndpoint("");
    EXPECT_EQ(endpoints.getConfig(), "https://api.orbinel.example/api/v3/session/start");
}

TEST(Endpoints, ScrambleExactlyThreeUrlsAndUnscrambleOneAnswer) {
    OrbinelEndpoints endpoints;
    endpoints.setCustomEndpoint("https://x.test");
    for (const auto& url : {endpoints.sessionStop(), endpoints.getMessageCenterData(), endpoints.getIdentity()}) {
        EXPECT_TRUE(endpoints.shouldEncryptEndpoint(url));
        EXPECT_FALSE(endpoints.shouldEncryptEndpoint(url + "/"));
        EXPECT_EQ(endpoints.shouldDecryptEndpoint(url), url == endpoints.getIdentity());
    }
    EXPECT_FALSE(endpoints.shouldEncryptEndpoint(endpoints.getConfig()));
}

}  // namespace
}  // namespace orbinel::testing

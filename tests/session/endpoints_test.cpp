#include "session/endpoints.hpp"

#include <gtest/gtest.h>

namespace orbinel::testing {
namespace {

TEST(Endpoints, FormEveryUrlOnTheEndpointInForce) {
    OrbinelEndpoints endpoints;
    EXPECT_EQ(endpoints.getConfig(), "https://api.orbinel.example/api/v3/session/start");
    endpoints.setCustomEndpoint("https://x.test");
    const std::pair<std::string, const char*> urls[] = {
        {endpoints.getConfig(), "/api/v3/session/start"},
        {endpoints.sessionStop(), "/api/v3/session/stop"},
        {endpoints.getIdentity(), "/api/identity/v3/get"},
        {endpoints.sendGDPRConsent(), "/api/v1/privacy/gdpr/consent/set"},
        {endpoints.getGDPRConsent(), "/api/v1/privacy/gdpr/consent/get"},
        {endpoints.getMessageCenterData(), "/api/message_center/v2/sdk/get"},
        {endpoints.getAddTestDeviceEndpoint(), "/api/v1/test_device/add"},
        {endpoints.getGeofence(), "/api/v1/geofences"},
        {endpoints.notifyGeofence(), "/api/v1/geofences/notify"},
        {endpoints.logAPIv2(), "/api//logging/sdk/v2"},
        {endpoints.initWizardConnection(), "/api/wizard/v1/init_new_integration"},
        {endpoints.terminateWizardConnection(), "/api/wizard/v1/disconnect"},
        {endpoints.feedDataURL(), "/api/wizard/v1/feed_data"}};
    for (const auto& [url, path] : urls) EXPECT_EQ(url, std::string("https://x.test") + path);
    EXPECT_EQ(OrbinelEndpoints::logAPI(), "https://api.orbinel.example/api/logging/sdk/v1");
    EXPECT_EQ(OrbinelEndpoints::mailSessionLogAPI(), "https://collect.orbinel.example/v2/collect?");

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

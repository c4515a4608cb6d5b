#include "session/encryptor.hpp"

#include <gtest/gtest.h>

#include "orbinel/headless/headless_host.hpp"

namespace orbinel::testing {
namespace {

struct EncryptorTest : ::testing::Test {
    headless::HeadlessHost host;
    Reports reports{*host.console};
    OrbinelEncryptor encryptor{reports, *host.base64};
};

// Worked out by hand from the rules of the key with the multipliers 7919 and 104729.
TEST_F(EncryptorTest, BuildsTheKeyFromTheTimeStamp) {
    EXPECT_EQ(OrbinelEncryptor::getTheMagicalKey(""), "0");
    EXPECT_EQ(OrbinelEncryptor::getTheMagicalKey("0"), "7919");
    EXPECT_EQ(OrbinelEncryptor::getTheMagicalKey("x"), "7919");
    EXPECT_EQ(OrbinelEncryptor::getTheMagicalKey("1"), std::to_string(2 * 7919));
    EXPECT_EQ(OrbinelEncryptor::getTheMagicalKey("10"), std::to_string((2 * 7919) << 1));
    EXPECT_EQ(OrbinelEncryptor::getTheMagicalKey("102"), std::to_string(((2 * 7919) << 1) ^ (3 * 104729)));
    EXPECT_EQ(OrbinelEncryptor::getTheMagicalKey("1024"), std::to_string((((2 * 7919) << 1) ^ (3 * 104729)) >> 2));
    // Hundreds of characters only ever wrap within 64 bits.
    EXPECT_FALSE(OrbinelEncryptor::getTheMagicalKey(std::string(1000, '9')).empty());
}

TEST_F(EncryptorTest, ReturnsExactlyWhatWasScrambled) {
    for (const std::string& text :
         {std::string("{}"), std::string("{\"a\":\"\xC3\xA4\"}"), std::string(100'000, 'x')}) {
        for (const std::string timestamp : {"1767225690", "", "not a number"}) {
            const auto envelope = encryptor.getEncryptedPayloadForData(text, timestamp);
            ASSERT_EQ(envelope.size(), 1U);
            EXPECT_EQ(encryptor.decryptPayload(envelope["payload"].stringOrEmpty(), timestamp), text);
        }
    }
    const auto one = encryptor.getEncryptedPayloadForData("{\"a\":1}", "1767225690");
    EXPECT_NE(one, encryptor.getEncryptedPayloadForData("{\"a\":1}", "1767225691"));
}

// A base64 digit that equals the key's digit at its place becomes a zero byte inside the outer base64.
TEST_F(EncryptorTest, CarriesAScrambledUnitOfZero) {
    const std::string text("\xD3");  // base64 "0w==": its first character is the empty time stamp's key
    const auto envelope = encryptor.getEncryptedPayloadForData(text, "");
    const auto inner = host.base64->decode(envelope["payload"].stringOrEmpty());
    ASSERT_TRUE(inner);
    EXPECT_EQ((*inner)[0], '\0');
    const auto plain = encryptor.getEncryptedPayloadForData("\xD0\xB0", "");  // a letter in two bytes
    EXPECT_EQ(encryptor.decryptPayload(plain["payload"].stringOrEmpty(), ""), "\xD0\xB0");
}

TEST_F(EncryptorTest, GivesNothingForWhatIsNoEnvelope) {
    const auto scrambledBinary = encryptor.getEncryptedPayloadForData("\xFF\xFE", "1")["payload"].stringOrEmpty();
    for (const std::string& input :
         {std::string("no base64!"), std::string("abc"), host.base64->encode("\xC3\xA4\xC3\xA4"),
          host.base64->encode("plain"), scrambledBinary}) {
        EXPECT_EQ(encryptor.decryptPayload(input, "1"), std::nullopt) << input;
    }
}

}  // namespace
}  // namespace orbinel::testing

#pragma once

#include <memory>
#include <optional>
#include <string>

#include "orbinel/platform/base64.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

struct Base64Contract : Contract<std::shared_ptr<platform::Base64>> {
    std::shared_ptr<platform::Base64>& base64 = made;
};

TEST_P(Base64Contract, EncodesTheKnownAnswersAndReadsBackEveryLength) {
    EXPECT_EQ(base64->encode(""), "");
    EXPECT_EQ(base64->encode("f"), "Zg==");
    EXPECT_EQ(base64->encode("fo"), "Zm8=");
    EXPECT_EQ(base64->encode("foo"), "Zm9v");
    EXPECT_EQ(base64->encode(std::string("\xfb\xff\0", 3)), "+/8A");
    std::string bytes;
    for (int i = 0; i < 600; ++i) {
        const auto text = base64->encode(bytes);
        EXPECT_EQ(text.size(), (bytes.size() + 2) / 3 * 4);  // no line breaks
        ASSERT_EQ(base64->decode(text), bytes);
        bytes.push_back(static_cast<char>(i * 37));
    }
}

TEST_P(Base64Contract, DecodesOnlyWhatIsBase64ToTheLetter) {
    EXPECT_EQ(base64->decode(""), "");
    for (const auto& text :
         {std::string("Zg"), std::string("Zg="), std::string("Z==="), std::string("===="), std::string("Zg==Zg=="),
          std::string("Zm9v\n"), std::string(" Zm9"), std::string("Zm9\0", 4), std::string("Zm9-"), std::string("Zm9_"),
          std::string("Z=g="), std::string("Zh=="), std::string("Zm9="), std::string("Zmş"), std::string("Zm9vZ")}) {
        EXPECT_EQ(base64->decode(text), std::nullopt) << text;
    }
}

}  // namespace orbinel::contract

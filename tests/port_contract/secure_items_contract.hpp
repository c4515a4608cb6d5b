#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "orbinel/platform/secure_items.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

/// Opens the items over the same storage, as each launch of the application does.
struct SecureItemsUnderTest {
    std::function<std::shared_ptr<platform::SecureItems>()> open;
};

struct SecureItemsContract : Contract<SecureItemsUnderTest> {
    std::shared_ptr<platform::SecureItems> items = made.open();
};

TEST_P(SecureItemsContract, KeepsEachServiceAndAccountApartAlsoAcrossLaunches) {
    const std::string bytes("secret\0with\xff bytes", 18);
    // Names that collide where the two are merely joined, and names that would leave a folder.
    EXPECT_TRUE(items->store("a", "b/c", "1"));
    EXPECT_TRUE(items->store("a/b", "c", "2"));
    EXPECT_TRUE(items->store("../..", "..", "3"));
    EXPECT_TRUE(items->store("", "", bytes));
    EXPECT_TRUE(items->store(std::string(400, 'x'), "ş\n", ""));
    items.reset();
    items = made.open();

    EXPECT_EQ(items->find("a", "b/c"), "1");
    EXPECT_EQ(items->find("a/b", "c"), "2");
    EXPECT_EQ(items->find("../..", ".."), "3");
    EXPECT_EQ(items->find("", ""), bytes);
    EXPECT_EQ(items->find(std::string(400, 'x'), "ş\n"), "");
    EXPECT_EQ(items->find("a", "b"), std::nullopt);
}

TEST_P(SecureItemsContract, ReplacesAndRemoves) {
    items->remove("s", "a");
    EXPECT_TRUE(items->store("s", "a", "a longer first secret"));
    EXPECT_TRUE(items->store("s", "a", "short"));
    EXPECT_TRUE(items->store("s", "other", "stays"));
    EXPECT_EQ(items->find("s", "a"), "short");
    items->remove("s", "a");
    EXPECT_EQ(items->find("s", "a"), std::nullopt);
    EXPECT_EQ(items->find("s", "other"), "stays");
}

TEST_P(SecureItemsContract, AReaderNeverSeesAMixture) {
    const std::string odd(5000, '1');
    const std::string even(3000, '2');
    ASSERT_TRUE(items->store("s", "a", odd));
    std::atomic<bool> ended{false};
    std::thread writer([&] {
        for (int i = 0; i < 100; ++i) EXPECT_TRUE(items->store("s", "a", i % 2 == 0 ? even : odd));
        ended = true;
    });
    do {
        const auto seen = items->find("s", "a");
        EXPECT_TRUE(seen == odd || seen == even);
    } while (!ended);
    writer.join();
}

}  // namespace orbinel::contract

#include "orbinel/platform/delegate.hpp"

#include <gtest/gtest.h>

namespace orbinel::platform {
namespace {

DelegateImplementation answering(bool answer) {
    return [answer](Delegate&, const DelegateArguments&) { return answer; };
}

TEST(DelegateClasses, AddOnceExchangeAndRemoveWhileObjectsLive) {
    const auto type = std::make_shared<DelegateClass>("ShopDelegate");
    Delegate delegate(type);
    EXPECT_EQ(delegate.perform("open:", {}), std::nullopt);
    EXPECT_TRUE(type->addOperation("open:", answering(true)));
    EXPECT_FALSE(type->addOperation("open:", answering(false)));
    EXPECT_EQ(delegate.perform("open:", {}), true);

    const auto own = type->implementation("open:");
    EXPECT_FALSE(type->exchangeImplementations("open:", "other:"));
    EXPECT_TRUE(type->addOperation("other:", answering(false)));
    EXPECT_TRUE(type->exchangeImplementations("open:", "other:"));
    EXPECT_EQ(delegate.perform("open:", {}), false);
    EXPECT_EQ(delegate.perform("other:", {}), true);
    EXPECT_EQ(type->implementation("other:"), own);

    EXPECT_TRUE(type->removeOperation("open:"));
    EXPECT_FALSE(type->removeOperation("open:"));
    EXPECT_FALSE(delegate.respondsTo("open:"));
    EXPECT_TRUE(delegate.respondsTo("other:"));
}

TEST(DelegateClasses, AnImplementationKnowsItsObjectAndMayChangeTheClass) {
    struct Counting : Delegate {
        using Delegate::Delegate;
        int calls = 0;
    };
    const auto type = std::make_shared<DelegateClass>("Counting");
    type->addOperation("once:", [](Delegate& self, const DelegateArguments&) -> DelegateResult {
        ++static_cast<Counting&>(self).calls;
        self.type()->removeOperation("once:");
        return self.perform("once:", {});
    });
    Counting one(type);
    const Counting other(type);
    EXPECT_EQ(one.perform("once:", {}), std::nullopt);
    EXPECT_EQ(one.calls, 1);
    EXPECT_EQ(other.calls, 0);
}

TEST(CompletionHandlers, TellOnceWhicheverCopyIsCalled) {
    int told = 0;
    const auto token = std::make_shared<int>();
    const CompletionHandler handler([&told, token] { ++told; });
    const auto copy = handler;
    copy();
    handler();
    copy();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(token.use_count(), 1);
    CompletionHandler()();
}

}  // namespace
}  // namespace orbinel::platform

#include "system/NameLock.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <utility>

namespace tolvane {
namespace {

// The tests of another build may run beside these.
std::string Own(const std::string& name) {
    return "test-" + std::to_string(getpid()) + "-" + name;
}

TEST(NameLock, IsHeldByOneAtATime) {
    {
        const auto first = TNameLock::TryHold(Own("a"));
        EXPECT_TRUE(first);
        EXPECT_FALSE(TNameLock::TryHold(Own("a")));
        EXPECT_TRUE(TNameLock::TryHold(Own("b")));
    }
    EXPECT_TRUE(TNameLock::TryHold(Own("a")));
}

TEST(NameLock, IsHandedOver) {
    auto first = TNameLock::TryHold(Own("a"));
    auto second = TNameLock::TryHold(Own("b"));
    ASSERT_TRUE(first && second);
    *second = std::move(*first);
    first.reset();
    EXPECT_FALSE(TNameLock::TryHold(Own("a")));
    EXPECT_TRUE(TNameLock::TryHold(Own("b")));
    second.reset();
    EXPECT_TRUE(TNameLock::TryHold(Own("a")));
}

TEST(NameLock, IsKeptWhenItIsHandedToItself) {
    auto lock = TNameLock::TryHold(Own("a"));
    ASSERT_TRUE(lock);
    TNameLock& same = *lock;
    *lock = std::move(same);
    EXPECT_FALSE(TNameLock::TryHold(Own("a")));
}

TEST(NameLock, MayBeAPathOfAnyLength) {
    const std::string end = Own("\\\\.\\/dev/tty");
    const auto first = TNameLock::TryHold(std::string(1000, 'a') + end);
    ASSERT_TRUE(first);
    EXPECT_FALSE(TNameLock::TryHold(std::string(1000, 'a') + end));
    EXPECT_TRUE(TNameLock::TryHold(std::string(1000, 'a') + end + "2"));
}

}  // namespace
}  // namespace tolvane

// Compiled with the stack protector, unlike the other tests.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

extern "C" const std::uintptr_t __stack_chk_guard;  // NOLINT: the compiler's name

namespace tolvane {
namespace {

constexpr std::size_t kSpace = 16;
constexpr int kOverwrittenStack = static_cast<int>(0xC0000409);

__attribute__((noinline)) void WriteBytes(volatile char* at, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        at[i] = 'x';
}

__attribute__((noinline)) char WriteOnStack(std::size_t count) {
    char space[kSpace];
    WriteBytes(space, count);
    return space[0];
}

TEST(StackGuardDeathTest, AnOverwrittenStackEndsTheProcess) {
    EXPECT_EXIT(WriteOnStack(kSpace + 8), testing::ExitedWithCode(kOverwrittenStack), "");
}

TEST(StackGuard, WhatFitsIsWritten) {
    EXPECT_EQ(WriteOnStack(kSpace), 'x');
}

TEST(StackGuard, IsChosenWithAZeroByteAtItsBeginning) {
    EXPECT_NE(__stack_chk_guard, 0U);
    EXPECT_EQ(__stack_chk_guard & 0xFFU, 0U);
}

}  // namespace
}  // namespace tolvane

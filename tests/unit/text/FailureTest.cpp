#include "text/Failure.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

template <class Exception>
std::string MessageOfThrown(const Exception& exception) {
    try {
        throw exception;  // NOLINT(misc-throw-by-value-catch-by-reference): any type is thrown here
    } catch (...) {
        return MessageOfCurrentException();
    }
}

TEST(MessageOfCurrentExceptionTest, AnExceptionGivesItsMessage) {
    EXPECT_EQ(MessageOfThrown(std::runtime_error("plain words")), "plain words");
}

TEST(MessageOfCurrentExceptionTest, AFailureKeepsItsZeroBytes) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(MessageOfThrown(TFailure(text)), text);
}

TEST(MessageOfCurrentExceptionTest, AnExceptionWithoutAMessageIsAnUnknownError) {
    EXPECT_EQ(ToUtf8(MessageOfThrown(std::runtime_error(""))), "Неизвестна грешка");
}

TEST(MessageOfCurrentExceptionTest, WhatIsNoExceptionIsAnUnknownError) {
    EXPECT_EQ(ToUtf8(MessageOfThrown(42)), "Неизвестна грешка");
}

}  // namespace
}  // namespace tolvane

#include "text/Failure.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

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

TEST(MessageOfCurrentExceptionTest, AShortageOfMemoryIsToldInTheUsersLanguage) {
    EXPECT_EQ(ToUtf8(MessageOfThrown(std::bad_alloc())), "Няма достатъчно памет");
}

// What `show` is called with while an exception is handled. It throws `failures` times.
std::vector<std::string> ShownTexts(int failures) {
    std::vector<std::string> shown;
    try {
        throw std::runtime_error("words");
    } catch (...) {
        ShowCurrentException("lead: ", [&](std::string_view text) {
            shown.push_back(ToUtf8(text));
            if (failures-- > 0) throw std::bad_alloc();
        });
    }
    return shown;
}

TEST(ShowCurrentExceptionTest, ShowsTheMessageBehindItsLead) {
    EXPECT_EQ(ShownTexts(0), std::vector<std::string>{"lead: words"});
}

TEST(ShowCurrentExceptionTest, ShowsAFixedTextWhenThereIsNoMemoryForTheMessage) {
    const std::vector<std::string> expected = {"lead: words", "Няма достатъчно памет"};
    EXPECT_EQ(ShownTexts(1), expected);
    EXPECT_EQ(ShownTexts(2), expected);
}

}  // namespace
}  // namespace tolvane

#include "system/SystemError.h"
#include "text/Failure.h"

#include <gtest/gtest.h>

#include <asio/error.hpp>
#include <cerrno>

namespace tolvane {
namespace {

#ifdef _WIN32
constexpr int kNoSuchFile = 2;  // ERROR_FILE_NOT_FOUND
#else
constexpr int kNoSuchFile = ENOENT;
#endif

TEST(SystemErrorTextTest, HasTheSystemsWordsOnOneLineAndTheNumberInBrackets) {
    const std::string text = SystemErrorText({kNoSuchFile, std::system_category()});
    EXPECT_TRUE(text.ends_with(" (2)")) << text;
    EXPECT_GT(text.size(), std::string("x (2)").size());
    EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << text;
    EXPECT_EQ(text.find(". ("), std::string::npos) << text;
}

TEST(SystemErrorTextTest, AFullStopIsKeptOnRequest) {
    const std::error_code code(kNoSuchFile, std::system_category());
    const std::string kept = SystemErrorText(code, TFullStop::Kept);
#ifdef _WIN32
    EXPECT_TRUE(kept.ends_with(". (2)")) << kept;
#else
    EXPECT_EQ(kept, "No such file or directory (2)");
#endif
}

TEST(SystemErrorTextTest, AnUnknownNumberIsStillShown) {
    const std::string text = SystemErrorText({20999, std::system_category()});
    EXPECT_TRUE(text.ends_with(" (20999)")) << text;
}

// The socket library has a category of its own for the system's errors.
TEST(SystemErrorTextTest, TheSameErrorOfTheSocketLibraryHasTheSameText) {
    const std::error_code error = asio::error::connection_refused;
    EXPECT_EQ(SystemErrorText(error), SystemErrorText({error.value(), std::system_category()}));
}

TEST(FailureTextTest, ASystemErrorIsShownWithoutTheCallsName) {
    const std::error_code code(kNoSuchFile, std::system_category());
    EXPECT_EQ(FailureText(std::system_error(code, "open")), SystemErrorText(code));
}

TEST(FailureTextTest, AFailureKeepsItsZeroBytes) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(FailureText(TFailure(text)), text);
}

TEST(FailureTextTest, AnyOtherExceptionSpeaksForItself) {
    EXPECT_EQ(FailureText(std::runtime_error("plain words")), "plain words");
}

}  // namespace
}  // namespace tolvane

#include "command/UtcTime.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

using std::chrono::sys_seconds;

sys_seconds At(long long secondsSince1970) {
    return sys_seconds(std::chrono::seconds(secondsSince1970));
}

TEST(UtcTime, IsWrittenInOneForm) {
    EXPECT_EQ(UtcText(At(0)), "1970-01-01T00:00:00Z");
    EXPECT_EQ(UtcText(At(951'782'399)), "2000-02-28T23:59:59Z");
    EXPECT_EQ(UtcText(At(951'782'400)), "2000-02-29T00:00:00Z");
    EXPECT_EQ(UtcText(At(-1)), "1969-12-31T23:59:59Z");
}

TEST(UtcTime, IsReadFromThatFormOnly) {
    EXPECT_EQ(ParseUtc("2000-02-29T00:00:00Z"), At(951'782'400));
    EXPECT_EQ(ParseUtc("1969-12-31T23:59:59Z"), At(-1));
    for (const char* text :
         {"", "2000-02-29T00:00:00", "2000-02-29T00:00:00Z ", "2000-02-29 00:00:00Z",
          "2000-02-30T00:00:00Z", "2001-02-29T00:00:00Z", "2000-13-01T00:00:00Z",
          "2000-00-01T00:00:00Z", "2000-01-00T00:00:00Z", "2000-01-01T24:00:00Z",
          "2000-01-01T00:60:00Z", "2000-01-01T00:00:60Z", "+000-01-01T00:00:00Z",
          "2000-01-01T0 :00:00Z", "2000-1-001T00:00:00Z"})
        EXPECT_FALSE(ParseUtc(text)) << text;
}

}  // namespace
}  // namespace tolvane

#include "database/DatabaseError.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace tolvane {
namespace {

TEST(DatabaseError, CopiesKeepTheWholeStatus) {
    const TDatabaseError error("first\nsecond", {{1, 335544721, {}}, {2, 0, "server"}}, -902);
    const TDatabaseError copy = error;  // NOLINT: the copy is the point
    EXPECT_STREQ(copy.what(), "first\nsecond");
    EXPECT_EQ(copy.ErrorCode(), 335544721);
    EXPECT_EQ(copy.SqlCode(), -902);
    ASSERT_EQ(copy.Status().size(), 2U);
    EXPECT_EQ(copy.Status()[1].text, "server");
    EXPECT_TRUE(std::is_nothrow_copy_constructible_v<TDatabaseError>);
}

TEST(DatabaseError, WithoutTheServerHasNoCode) {
    const TDatabaseError error("text");
    EXPECT_EQ(error.ErrorCode(), 0);
    EXPECT_EQ(error.SqlCode(), 0);
    EXPECT_TRUE(error.Status().empty());
}

}  // namespace
}  // namespace tolvane

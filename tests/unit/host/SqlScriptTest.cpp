#include "host/SqlScript.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvane::test {
namespace {

using host::SqlStatements;
using TTexts = std::vector<std::string>;

TEST(SqlStatements, EndWithSemicolons) {
    EXPECT_EQ(SqlStatements("create table A (B integer);\r\n\r\ncommit;\r\n"),
              (TTexts{"create table A (B integer)", "commit"}));
    EXPECT_EQ(SqlStatements("commit"), TTexts{"commit"});
}

TEST(SqlStatements, LeaveOutCommentsAndWhatIsEmpty) {
    EXPECT_EQ(SqlStatements("-- one; two\ninsert -- why\ninto A;; \n ; -- end"),
              TTexts{"insert \ninto A"});
    EXPECT_EQ(SqlStatements(""), TTexts{});
    EXPECT_EQ(SqlStatements("--"), TTexts{});
}

TEST(SqlStatements, KeepTextsAsTheyAre) {
    EXPECT_EQ(SqlStatements("insert 'a;b -- c', 'it''s; so', \"D;\" - 1; commit;"),
              (TTexts{"insert 'a;b -- c', 'it''s; so', \"D;\" - 1", "commit"}));
    EXPECT_EQ(SqlStatements("insert 'no end;"), TTexts{"insert 'no end;"});
}

}  // namespace
}  // namespace tolvane::test

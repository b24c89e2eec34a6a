#include <string>
#include <vector>

#include "CoreFixture.h"

namespace tolvane {
namespace {

// The highest number of a scale, a number in the host, and the one that the scale knows it by.
struct TNumberCase {
    int maxPlu;
    const char* number;
    int written;  // 0: the article is skipped
};

void PrintTo(const TNumberCase& number, std::ostream* out) {
    *out << number.number << " of " << number.maxPlu;
}

const std::vector<TNumberCase> kNumbers = {
    // one digit
    {9, "0", 0},
    {9, "1", 1},
    {9, "9", 9},
    {9, "10", 0},
    {9, "12", 2},
    {5, "6", 0},
    {5, "15", 5},
    // two
    {10, "0", 0},
    {10, "1", 1},
    {10, "10", 10},
    {10, "11", 0},
    {99, "0", 0},
    {99, "1", 1},
    {99, "99", 99},
    {99, "100", 0},
    {99, "101", 1},
    // three
    {100, "0", 0},
    {100, "1", 1},
    {100, "100", 100},
    {100, "101", 0},
    {999, "0", 0},
    {999, "1", 1},
    {999, "999", 999},
    {999, "1000", 0},
    {999, "1234", 234},
    // four
    {1000, "0", 0},
    {1000, "1", 1},
    {1000, "1000", 1000},
    {1000, "1001", 0},
    {3000, "12345", 2345},
    {3000, "3001", 0},
    {9999, "0", 0},
    {9999, "1", 1},
    {9999, "9999", 9999},
    {9999, "10000", 0},
    {9999, "20001", 1},
    // five
    {10000, "0", 0},
    {10000, "1", 1},
    {10000, "10000", 10000},
    {10000, "10001", 0},
    {10000, "100001", 1},
    {65535, "0", 0},
    {65535, "1", 1},
    {65535, "65535", 65535},
    {65535, "65536", 0},
    {65535, "2147483647", 0},
    {65535, "2147400647", 647},
    // no 32-bit number
    {65535, "2147483648", 0},
    {65535, "x", 0},
};

class PassNumberTest : public test::TCorePassTest,
                       public ::testing::WithParamInterface<TNumberCase> {
protected:
    PassNumberTest() { options.scale.capacity = GetParam().maxPlu; }
    const std::string line_ = std::string(GetParam().number) + "|22|1|0|0|1.00|0|5|A|x|||||0|0|1|";
    const std::string number_ = std::to_string(GetParam().written);
};

TEST_P(PassNumberTest, AnUploadWritesTheNumbersLastDigitsOrSkipsTheArticle) {
    EXPECT_TRUE(Upload({line_})) << session->LastError;
    EXPECT_EQ(Commands(), GetParam().written == 0
                              ? "3C 36 48 3C"
                              : "3C 36 48 4A:" + number_ + " 4C:" + number_ + ".0 4C:" + number_ +
                                    ".4 4C:" + number_ + ".5 3C");
}

TEST_P(PassNumberTest, ADeleteClearsTheNumbersLastDigitsOrSkipsTheArticle) {
    EXPECT_TRUE(Delete({line_})) << session->LastError;
    EXPECT_EQ(Commands(), GetParam().written == 0
                              ? "3C 36 48 3C"
                              : "3C 36 48 49:" + number_ + " 4C:" + number_ + ".0 3C");
}

INSTANTIATE_TEST_SUITE_P(Numbers, PassNumberTest, ::testing::ValuesIn(kNumbers),
                         [](const auto& row) {
                             return std::string(row.param.number) + "In" +
                                    std::to_string(row.param.maxPlu);
                         });

using NegativeNumberTest = test::TCorePassTest;

TEST_F(NegativeNumberTest, FailsInTheDriverAndSendsNothing) {
    const std::string line = "-5|22012|1|0|0|1.00|0|5|A|x|||||0|0|101|";
    EXPECT_FALSE(Upload({line}));
    EXPECT_EQ(session->LastError,
              "Fail! Plu: -5 \"A\" [SetPrice] ErrCode: 0, Fail set PLU price: Invalid PLU number");
    EXPECT_EQ(Commands(), "3C 36 48");
    EXPECT_FALSE(Delete({line}));
    EXPECT_EQ(session->LastError,
              "ProcessDelete >> [SetPrice] ErrCode: 0, Fail set PLU price: Invalid PLU number");
    EXPECT_EQ(Commands(), "3C 36 48 3C 36 48 3C");
}

}  // namespace
}  // namespace tolvane

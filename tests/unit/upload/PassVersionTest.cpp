#include <string>
#include <utility>
#include <vector>

#include "CoreFixture.h"

namespace tolvane {
namespace {

using test::TEvents;

const std::string kLine12 = "12|22012|1|0|0|1.00|0|5|A|x|||||0|0|101|";
const std::string kLine300 = "300|22013|1|0|0|2.50|0|5|B|x|||||0|0|102|";
const std::string kArticle12 = "4A:12 4C:12.0 4C:12.4 4C:12.5 ";
const std::string kArticle300 = "4A:300 4C:300.0 4C:300.4 4C:300.5 ";
const std::string kListed12 = "49:12 4C:12.0 ";
const std::string kListed300 = "49:300 4C:300.0 ";

// A version reply with this number of data bytes from a scale "1.04" of 3000 (B8 0B) articles in
// mode 3.
struct TReplyLength {
    int length;
    const char* uploadVersion;  // how an upload's log shows it
    const char* deleteVersion;  // how a delete's does
    std::string articles;
    std::string listed;
    int everything;  // requests of a delete of everything: 3 before the articles, 2 for each, 1
                     // after
};

void PrintTo(const TReplyLength& reply, std::ostream* out) {
    *out << reply.length << " bytes";
}

// 184 is B8 alone.
const std::vector<TReplyLength> kLengths = {
    {1, "Ver: ; Max.PLU: 0; Mode: 0", "Ver: ; Max.PLU: 0; Mode:0", "", "", 4},
    {5, "Ver: 1.04; Max.PLU: 0; Mode: 0", "Ver: 1.04; Max.PLU: 0; Mode:0", "", "", 4},
    {10, "Ver: 1.04; Max.PLU: 184; Mode: 0", "Ver: 1.04; Max.PLU: 184; Mode:0", kArticle12,
     kListed12, 372},
    {11, "Ver: 1.04; Max.PLU: 3000; Mode: 0", "Ver: 1.04; Max.PLU: 3000; Mode:0",
     kArticle12 + kArticle300, kListed12 + kListed300, 6004},
    {16, "Ver: 1.04; Max.PLU: 3000; Mode: 0", "Ver: 1.04; Max.PLU: 3000; Mode:0",
     kArticle12 + kArticle300, kListed12 + kListed300, 6004},
    {17, "Ver: 1.04; Max.PLU: 3000; Mode: 3", "Ver: 1.04; Max.PLU: 3000; Mode:3",
     kArticle12 + kArticle300, kListed12 + kListed300, 6004},
    {200, "Ver: 1.04; Max.PLU: 3000; Mode: 3", "Ver: 1.04; Max.PLU: 3000; Mode:3",
     kArticle12 + kArticle300, kListed12 + kListed300, 6004},
};

class PassVersionTest : public test::TCorePassTest,
                        public ::testing::WithParamInterface<TReplyLength> {
protected:
    PassVersionTest() {
        options.scale.version = "1.04";
        options.scale.labelMode = 3;
        options.versionReplyLength = GetParam().length;
    }
    TEvents Logged() const { return test::Filtered(events, {"log:"}); }
};

TEST_P(PassVersionTest, AnUploadTakesTheFieldsThatAreThereAndLeavesTheScaleWeighing) {
    TScaleRec unknown = Rec();
    unknown.ScaleType = 77;  // its texts do not depend on the mode
    EXPECT_TRUE(Upload({kLine12, kLine300}, unknown)) << session->LastError;
    EXPECT_EQ(Commands(), "3C 36 48 " + GetParam().articles + "3C");
    EXPECT_FALSE(IsProgramming());
}

TEST_P(PassVersionTest, AnUploadLogsTheFieldsThatAreThere) {
    EXPECT_TRUE(Upload({}));
    EXPECT_EQ(Logged(), (TEvents{std::string("log:   Везна EVL - ") + GetParam().uploadVersion,
                                 "log:   Брой записани артикули: 0"}));
}

TEST_P(PassVersionTest, ADeleteTakesTheFieldsThatAreThereAndLeavesTheScaleWeighing) {
    EXPECT_TRUE(Delete({kLine12, kLine300})) << session->LastError;
    EXPECT_EQ(Commands(), "3C 36 48 " + GetParam().listed + "3C");
    EXPECT_EQ(Logged(), TEvents{std::string("log:   - ") + GetParam().deleteVersion});
    EXPECT_FALSE(IsProgramming());
}

TEST_P(PassVersionTest, DeletingEverythingGoesUpToTheHighestNumberThatIsThere) {
    EXPECT_TRUE(Delete({})) << session->LastError;
    EXPECT_EQ(Logged(), TEvents{std::string("log:   - ") + GetParam().deleteVersion});
    const simulator::TScaleState state = core->State();
    EXPECT_EQ(state.requests.total, GetParam().everything);
    EXPECT_EQ(state.requests.refused, 0);
    const int articles = (GetParam().everything - 4) / 2;
    ASSERT_EQ(state.articles.size(), static_cast<std::size_t>(articles));
    int number = 0;
    for (const auto& [held, article] : state.articles) {
        ASSERT_EQ(held, ++number);
        ASSERT_TRUE(article.IsCleared() && article.priceWrites == 1) << number;
    }
    EXPECT_FALSE(IsProgramming());
}

INSTANTIATE_TEST_SUITE_P(Lengths, PassVersionTest, ::testing::ValuesIn(kLengths),
                         [](const auto& row) { return std::to_string(row.param.length); });

using PassCapacityTest = test::TCorePassTest;

TEST_F(PassCapacityTest, AVersionReplyWithoutDataEndsTheUploadInProgrammingMode) {
    options.versionReplyLength = 0;
    EXPECT_FALSE(Upload({kLine12}));
    EXPECT_EQ(session->LastError,
              "Fail! Plu: 0 \"\" [GetVersion] ErrCode: 0, Fail get version: "
              "Unexpected answer from scale. No error code");
    EXPECT_EQ(Commands(), "3C 36 48");
    EXPECT_TRUE(IsProgramming());
}

TEST_F(PassCapacityTest, AVersionReplyWithoutDataEndsTheDeletionInWeighingMode) {
    options.versionReplyLength = 0;
    EXPECT_FALSE(Delete({}));
    EXPECT_EQ(session->LastError,
              "ProcessDelete >> [GetVersion] ErrCode: 0, Fail get version: "
              "Unexpected answer from scale. No error code");
    EXPECT_EQ(Commands(), "3C 36 48 3C");
    EXPECT_FALSE(IsProgramming());
}

TEST_F(PassCapacityTest, AScaleOfNoArticlesIsWrittenAndDeletedWithoutAnArticleCommand) {
    options.scale.capacity = 0;
    EXPECT_TRUE(Upload({kLine12, "0|22012|1|0|0|1.00|0|5|A|x|||||0|0|101|"}));
    EXPECT_TRUE(Delete({kLine12}));
    EXPECT_TRUE(Delete({}));
    EXPECT_EQ(Commands(), "3C 36 48 3C 3C 36 48 3C 3C 36 48 3C");
    EXPECT_EQ(test::Filtered(events, {"log:"}),
              (TEvents{"log:   Везна EVL - Ver: 1.04; Max.PLU: 0; Mode: 1",
                       "log:   Брой записани артикули: 0", "log:   - Ver: 1.04; Max.PLU: 0; Mode:1",
                       "log:   - Ver: 1.04; Max.PLU: 0; Mode:1"}));
    EXPECT_EQ(test::Filtered(events, {"progress:"}),
              TEvents{"progress:Изтриване всички артикули."});
}

TEST_F(PassCapacityTest, AScaleOf65535ArticlesIsWrittenUpToTheLast) {
    options.scale.capacity = 65535;
    EXPECT_TRUE(Upload({"65535|22012|1|0|0|1.00|0|5|A|x|||||0|0|101|",
                        "65536|22012|1|0|0|1.00|0|5|B|x|||||0|0|101|",
                        "165535|22012|1|0|0|2.00|0|5|C|x|||||0|0|101|"}));
    EXPECT_EQ(Commands(),
              "3C 36 48 4A:65535 4C:65535.0 4C:65535.4 4C:65535.5 "
              "4A:65535 4C:65535.0 4C:65535.4 4C:65535.5 3C");
    EXPECT_EQ(Held(65535), "200 'C' 0,4,5");
}

TEST_F(PassCapacityTest, DeletingEverythingReachesEachOf65535ArticlesOnce) {
    options.scale.capacity = 65535;
    options.keepsRequests = false;
    EXPECT_TRUE(Delete({}));
    const simulator::TScaleState state = core->State();
    EXPECT_EQ(state.requests.total, 3 + 2 * 65535 + 1);
    EXPECT_EQ(state.requests.refused, 0);
    ASSERT_EQ(state.articles.size(), 65535U);
    for (const auto& [number, article] : state.articles)
        ASSERT_TRUE(article.IsCleared() && article.priceWrites == 1) << number;
    EXPECT_FALSE(state.programming);
}

}  // namespace
}  // namespace tolvane

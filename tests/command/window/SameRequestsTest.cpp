// A scale gets the same requests from the command as from the window's run.

#include <gtest/gtest.h>

#include "command/ArticleJobs.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/UploadFixture.h"
#include "tests/unit/command/Shop.h"
#include "upload/ScaleSession.h"

namespace tolvane::test {
namespace {

struct TKind {
    const char* name;
    std::int32_t scaleType;
    int mode;
};

class TIdleView : public TJobView {
public:
    void Begins(std::size_t) override {}
    void Progress(std::size_t) override {}
    void Article(std::string_view, std::int32_t, std::string_view) override {}
};

// Articles of every sort, and some that neither of the two writes.
std::vector<TArticle> Articles() {
    TArticle full = Goods(12, "Айрян"_cp1251);
    full.number = 4711;
    full.ecrName = "АЙРЯН"_cp1251;
    full.comment1 = "съставки: мляко, вода, сол, закваска и още нещо"_cp1251;
    full.comment2 = "\x03\x04\x0C\x0D";
    full.comment3 = "c3";
    full.shipment = "L-7";
    full.bestBefore = "300";
    TArticle piece = Goods(7, "Яйца"_cp1251);
    piece.onlyWhole = "1";
    TArticle promoted = Goods(8, "Сирене"_cp1251);
    promoted.promotion = true;
    promoted.promotionPrice = 9.995;
    TArticle cut = Goods(10300, "Above the scale's numbers");
    TArticle unknown = Goods(3500, "A number that the scale lacks");
    TArticle dear = Goods(9, "A");
    dear.retail = 9999.99;
    TArticle free = Goods(10, "A");
    free.retail = 0;
    TArticle negative = Goods(11, "A");
    negative.retail = -1;
    TArticle code = Goods(13, "A");
    code.barcode = "2201";
    TArticle nameless = Goods(14, "");
    TArticle other = Goods(15, "A");
    other.forScales = "2,3";
    return {full, piece, promoted, cut, unknown, dear, free, negative, code, nameless, other};
}
constexpr int kWritten = 5;

class SameRequests : public testing::TestWithParam<TKind> {
protected:
    SameRequests() {
        rec_.ScaleType = GetParam().scaleType;
        rec_.ScaleAddr = 5;
        scale_->mode = GetParam().mode;
        scale_->wholeFrames = true;
        factory_.scales.push_back(scale_);
        regional_.decimalSeparator = ',';
    }

    // The requests, as they are on the wire, and the pauses of what has run.
    TEvents Taken() {
        TEvents taken = Filtered(events_, {"04 ", "wait "});
        events_.clear();
        return taken;
    }

    TEvents OfTheWindow() {
        const TArticleLineBuilder builder(*table_, choices_, regional_, [](std::string_view) {});
        std::vector<std::string> lines;
        builder.Build(RowsOfRun(*table_, false, {}, {}), rec_.ScaleNumb, lines);
        TRecordingView view(events_);
        TScaleSession session(factory_, clock_, view, stop_, regional_.decimalSeparator);
        EXPECT_TRUE(session.InitComm(rec_) && session.ProcessUpload(lines, rec_))
            << session.LastError;
        session.Close();
        return Taken();
    }

    TEvents OfTheCommand(const TWriteChoice& choice) {
        TIdleView view;
        TWriteJob job({.factory = factory_,
                       .clock = clock_,
                       .stop = stop_,
                       .view = view,
                       .stateFolder = folder_.Path(),
                       .lockWait = TMilliseconds(0)},
                      rec_, {.choices = choices_, .maxAge = kWeek, .now = [] { return kNoon; }},
                      {.table = *table_, .regional = regional_, .choice = choice});
        const TScaleResult result = job.Run();
        EXPECT_EQ(result.outcome, TScaleOutcome::Done) << result.error;
        EXPECT_EQ(result.written, std::size_t{kWritten});
        return Taken();
    }

    TEvents events_;
    TFakeClock clock_{events_};
    TRunStop stop_;
    TFakeFactory factory_{events_, clock_};
    std::shared_ptr<TFakeScale> scale_ = std::make_shared<TFakeScale>();
    std::shared_ptr<const TArticleTable> table_ = TableOf(Articles());
    TScaleRec rec_ = NetworkScale(1, "A");
    TLineChoices choices_;
    TRegionalSettings regional_;
    TScratchFolder folder_;
};

TEST_P(SameRequests, ComeAsFromTheWindowAfterOneMoreRequestForWeighingMode) {
    TEvents expected = OfTheWindow();
    int prices = 0;
    for (const TRequest& request : scale_->requests)
        if (request.command >= 0x49 && request.command <= 0x4B) ++prices;
    EXPECT_EQ(prices, kWritten);
    expected.insert(expected.begin(), expected.front());
    EXPECT_EQ(OfTheCommand({}), expected);
}

TEST_P(SameRequests, ComeWithAnEmptyLedgerWhenOnlyChangesAreAskedFor) {
    TEvents expected = OfTheWindow();
    expected.insert(expected.begin(), expected.front());
    EXPECT_EQ(OfTheCommand({.changedOnly = true}), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, SameRequests,
    testing::Values(TKind{"EvlMode0", kScaleTypeEvl, 0}, TKind{"EvlMode1", kScaleTypeEvl, 1},
                    TKind{"EvlMode2", kScaleTypeEvl, 2}, TKind{"EvlMode3", kScaleTypeEvl, 3},
                    TKind{"Ets", kScaleTypeEts, 0}, TKind{"S300Mode0", kScaleTypeS300, 0},
                    TKind{"S300Mode1", kScaleTypeS300, 1}, TKind{"S300Mode2", kScaleTypeS300, 2},
                    TKind{"S300Mode3", kScaleTypeS300, 3}, TKind{"Unknown", 7, 2}),
    [](const auto& kind) { return kind.param.name; });

}  // namespace
}  // namespace tolvane::test

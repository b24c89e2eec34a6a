#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "simulator/ScaleCore.h"
#include "tests/support/ShortMemory.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/CoreChannel.h"
#include "tests/support/upload/UploadFixture.h"
#include "text/Cp1251.h"
#include "upload/RunMarks.h"
#include "upload/ScaleRun.h"

namespace tolvane::test {
namespace {

class TIdleClock : public TClock {
public:
    TTimePoint Now() const override { return now_; }
    void Sleep(TMilliseconds pause) override { now_ += pause; }

private:
    TTimePoint now_{};
};

// Takes memory for each call, as one that passes them on to another thread, and throws when there
// is none.
class TMemoryRunView : public TRunView {
public:
    void ClearLog() override { Pass({}); }
    void Log(std::string line) override {
        Pass(line);
        const TEnoughMemory enough;
        log.push_back(ToUtf8(line));
    }
    void SetConnection(std::string text) override { Pass(text); }
    void SetProgress(std::string text) override { Pass(text); }
    void ShowCount(const TRunCount& count) override {
        Pass({});
        counted = count;
    }
    void SetRunning(bool on) override {
        Pass({});
        running = on;
    }
    void SetChoicesEnabled(bool enabled) override {
        Pass({});
        choices = enabled;
    }
    void ShowRunError(std::string text) override {
        Pass(text);
        const TEnoughMemory enough;
        errors.push_back(ToUtf8(text));
    }
    void ShowMemoryError() noexcept override {
        const TEnoughMemory enough;
        errors.emplace_back("out of memory");
    }
    bool HasLogged(std::string_view line) const {
        return std::find(log.begin(), log.end(), line) != log.end();
    }

    TRunCount counted;
    bool running = false;
    bool choices = true;
    std::vector<std::string> log;
    std::vector<std::string> errors;

private:
    static void Pass(const std::string& text) {
        std::make_unique<std::string>(text + std::string(32, ' '));
    }
};

// The wire and the scale at its end, which take no memory of this process.
class TForeignChannel : public TDevComm {
public:
    TForeignChannel(TClock& clock, simulator::TScaleCore& core, int& open)
        : open_(open), channel_(clock, core) {
        ++open_;
    }
    ~TForeignChannel() override { --open_; }
    std::string GetDescription() const override { return "core"; }
    bool IsConnected() const override { return channel_.IsConnected(); }
    bool Open() override {
        const TEnoughMemory enough;
        return channel_.Open();
    }
    void Close() override { channel_.Close(); }
    bool SendData(const TCmdBuffer& Data) override {
        const TEnoughMemory enough;
        return channel_.SendData(Data);
    }
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte, std::uint8_t EndByte,
                            std::int32_t TimeoutMs) override {
        const TEnoughMemory enough;
        return channel_.ReadAnswer(Reply, StartByte, EndByte, TimeoutMs);
    }

private:
    int& open_;
    TCoreChannel channel_;
};

class TForeignFactory : public TScaleFactory {
public:
    TForeignFactory(TClock& clock, simulator::TScaleCore& core) : clock_(clock), core_(core) {}
    std::unique_ptr<TElicomScale> CreateRS232(std::int32_t, std::int32_t) override {
        return nullptr;
    }
    std::unique_ptr<TElicomScale> CreateTCP(const std::string&, std::int32_t) override {
        std::unique_ptr<TDevComm> channel;
        {
            const TEnoughMemory enough;
            channel = std::make_unique<TForeignChannel>(clock_, core_, open);
        }
        return std::make_unique<TElicomScale>(std::move(channel), false, clock_);
    }
    std::unique_ptr<TElicomScale> CreateUDP(const std::string&) override { return nullptr; }

    int open = 0;

private:
    TClock& clock_;
    simulator::TScaleCore& core_;
};

enum class TRunOf { Writing, DeletingListed, DeletingEverything };

// Prices by article, without those that are deleted.
using TPrices = std::map<int, int>;

constexpr const char* kWritten = "Успешно записани артикули във везна: Щанд месо и деликатеси";
constexpr const char* kDeleted = "Успешно изтрити артикули от везна: Щанд месо и деликатеси";

class MemoryRun : public ::testing::TestWithParam<std::tuple<TRunOf, TShortMemory::THowLong>> {
protected:
    MemoryRun() {
        const auto table = TableOf({Goods(1, "Домати розови от Куртово Конаре"_cp1251),
                                    Goods(2, "Краставици оранжерийни от Пазарджик"_cp1251)});
        articles_ = {table, table->Order()};
        items_ = {{NetworkScale(1, "Щанд месо и деликатеси"_cp1251)}};
        // Before a deletion the scale holds both articles and a third one.
        simulator::TScaleState state;
        if (Kind() != TRunOf::Writing)
            for (int number = 1; number <= 3; ++number)
                state.articles[number].price = 700;
        options_.scale.capacity = 3;
        options_.initialState = state;
        options_.keepsRequests = false;
    }

    static TRunOf Kind() { return std::get<0>(GetParam()); }
    static TShortMemory::THowLong HowLong() { return std::get<1>(GetParam()); }
    static const char* Success() {
        return Kind() == TRunOf::DeletingEverything ? kDeleted : kWritten;
    }
    // What a scale holds in the end: the price of the articles, or only what was not to be deleted.
    static TPrices Expected() {
        switch (Kind()) {
            case TRunOf::Writing:
                return {{1, 1234}, {2, 1234}};
            case TRunOf::DeletingListed:
                return {{3, 700}};
            default:
                return {};
        }
    }

    // Runs with the n-th allocation failing; the number of allocations.
    int Run(int n) {
        view_ = {};
        core_ = std::make_unique<simulator::TScaleCore>(options_);
        TForeignFactory factory(clock_, *core_);
        TRunStop stop;
        TScaleRun run(factory, clock_, view_, stop, {});
        const TRunMarks marks(items_);
        const TShortMemory memory(n, HowLong());
        if (Kind() == TRunOf::DeletingEverything)
            run.RunDeleteEverything(items_, marks);
        else
            run.RunListed(items_, articles_, {}, Kind() == TRunOf::Writing);
        const int count = TShortMemory::Count();
        const TEnoughMemory enough;
        EXPECT_EQ(factory.open, 0);
        return count;
    }
    TPrices Prices() const {
        TPrices prices;
        for (const auto& [number, article] : core_->State().articles)
            if (article.price.value_or(0) != 0) prices[number] = *article.price;
        return prices;
    }
    void ExpectSuccess() const {
        EXPECT_EQ(view_.errors, std::vector<std::string>{});
        EXPECT_TRUE(view_.HasLogged(Success()));
        EXPECT_FALSE(view_.running);
        EXPECT_EQ(view_.counted, TRunCount{});
        EXPECT_TRUE(view_.choices);
        EXPECT_EQ(Prices(), Expected());
    }
    // A run ends with its controls at rest or with one error; it claims nothing that is not so.
    void ExpectAnEnd() const {
        EXPECT_LE(view_.errors.size(), 1U);
        if (view_.errors.empty()) {
            EXPECT_FALSE(view_.running);
            EXPECT_TRUE(view_.choices);
        }
        if (view_.HasLogged(Success())) {
            EXPECT_EQ(Prices(), Expected());
        }
    }

    TIdleClock clock_;
    TRunArticles articles_;
    std::vector<TScaleObj> items_;
    simulator::TCoreOptions options_;
    std::unique_ptr<simulator::TScaleCore> core_;
    TMemoryRunView view_;
};

INSTANTIATE_TEST_SUITE_P(
    Kinds, MemoryRun,
    ::testing::Combine(::testing::Values(TRunOf::Writing, TRunOf::DeletingListed,
                                         TRunOf::DeletingEverything),
                       ::testing::Values(TShortMemory::Once, TShortMemory::ForGood)));

TEST_P(MemoryRun, EndsWithWhatIsSoOrWithAnError) {
    const int all = Run(0);
    ExpectSuccess();
    ASSERT_GT(all, 50);
    int errors = 0;
    for (int n = 1; n <= all && !HasFailure(); ++n) {
        SCOPED_TRACE(n);
        Run(n);
        ExpectAnEnd();
        if (HowLong() == TShortMemory::ForGood) {
            EXPECT_EQ(view_.errors, std::vector<std::string>{"out of memory"});
        } else if (!view_.errors.empty()) {
            EXPECT_EQ(view_.errors.front(), "Няма достатъчно памет");
        }
        errors += static_cast<int>(view_.errors.size());
        Run(0);
        ExpectSuccess();
    }
    RecordProperty("allocations", all);
    RecordProperty("errors", errors);
}

}  // namespace
}  // namespace tolvane::test

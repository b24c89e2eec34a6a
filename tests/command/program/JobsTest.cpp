// How many scales --jobs lets work at once.

#include <algorithm>
#include <mutex>

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

// The scale of each thing that came, in its order.
using TOrder = std::vector<int>;

// How many scales were between the first and the last thing of theirs at the same time.
int MostAtOnce(const TOrder& order) {
    int most = 0;
    int now = 0;
    for (auto each = order.begin(); each != order.end(); ++each) {
        if (std::find(order.begin(), each, *each) == each) most = std::max(most, ++now);
        if (std::find(each + 1, order.end(), *each) == order.end()) --now;
    }
    return most;
}

class JobsTest : public TProgramTest {
protected:
    // Three scales that take their time.
    JobsTest() {
        for (const int number : {1, 2, 3}) {
            TScaleOptions options;
            options.faults = {.faults = {simulator::FaultFromText("slow,ms=50")}};
            options.onExchange = [recorded = recorded_, number](const auto&, const auto&) {
                const std::lock_guard lock(recorded->mutex);
                recorded->requests.push_back(number);
            };
            AddScale(number, TModel::S300, std::move(options));
        }
    }

    // Fills `events_` and `requests_`.
    void TestWith(const TWords& jobs) {
        TWords words = {"test", "-q", "--log", (folder_ / "run.log").string()};
        words.insert(words.end(), jobs.begin(), jobs.end());
        const TRun run = Run(words);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        for (const nlohmann::json& event : EventsIn(folder_ / "run.log"))
            if (event.contains("scale")) events_.push_back(event.at("scale"));
        const std::lock_guard lock(recorded_->mutex);
        requests_ = recorded_->requests;
    }

    TOrder requests_;
    TOrder events_;

private:
    // Outlives the scales.
    struct TRecorded {
        std::mutex mutex;
        TOrder requests{};
    };
    std::shared_ptr<TRecorded> recorded_ = std::make_shared<TRecorded>();
};

TEST_F(JobsTest, WithOneEachScaleWaitsForTheOneBeforeIt) {
    TestWith({"--jobs", "1"});
    EXPECT_EQ(events_, (TOrder{1, 1, 2, 2, 3, 3})) << "connected, scale";
    EXPECT_TRUE(std::ranges::is_sorted(requests_));
    EXPECT_EQ(MostAtOnce(requests_), 1);
}

TEST_F(JobsTest, WithTwoTheThirdScaleWaits) {
    TestWith({"--jobs", "2"});
    EXPECT_EQ(MostAtOnce(events_), 2);
    EXPECT_EQ(MostAtOnce(requests_), 2);
}

TEST_F(JobsTest, WithoutALimitAllScalesWorkAtOnce) {
    TestWith({});
    EXPECT_EQ(MostAtOnce(events_), 3);
    EXPECT_EQ(MostAtOnce(requests_), 3);
}

}  // namespace
}  // namespace tolvane::test

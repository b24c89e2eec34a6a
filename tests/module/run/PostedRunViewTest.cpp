#include "upload/forms/PostedRunView.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/UploadFixture.h"
#include "text/Cp1251.h"
#include "upload/RunMarks.h"
#include "upload/ScaleRun.h"
#include "window/Form.h"

namespace tolvane::test {
namespace {

class TQueueForm : public TForm {
public:
    TQueueForm() {
        TFormOptions options;
        options.className = L"TQueueForm";
        options.name = "QueueForm";
        MakePopup(options, nullptr);
    }
};

// A run over a scale that takes one article of two, one that refuses and one out of reach.
class PostedRunView : public ::testing::Test {
protected:
    void Run(TRunView& view) {
        TEvents ignored;
        TFakeClock clock(ignored);
        TFakeFactory factory(ignored, clock);
        std::vector<TScaleObj> items;
        for (int number = 1; number <= 3; ++number) {
            items.push_back({NetworkScale(number, std::to_string(number), "10.0.0.1", 1001)});
            factory.scales.push_back(std::make_shared<TFakeScale>());
        }
        factory.scales[1]->errorCode = [](const TRequest& request) -> std::uint8_t {
            return request.command == 0x4A ? 7 : 0;
        };
        factory.scales[2]->openError = "refused";
        TArticle article;
        article.name = "A";
        article.labelName = "B";
        TArticle bad = article;
        bad.barcode = "";
        const auto table = TableOf({article, bad});
        TRunStop stop;
        TScaleRun run(factory, clock, view, stop, {});
        run.RunListed(items, {table, table->Order()}, {}, true);
        run.RunDeleteEverything({items[0]}, TRunMarks({items[0]}));
        article.bestBefore = "x";
        const auto broken = TableOf({article});
        run.RunListed(items, {broken, broken->Order()}, {}, true);
    }
    static void PumpMessages() {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0)
            DispatchMessageW(&message);
    }
};

TEST_F(PostedRunView, ShowsExactlyWhatARunOnTheWindowsThreadShowsInItsOrder) {
    TEvents direct;
    TRecordingView directView(direct);
    directView.countsAreEvents = true;
    Run(directView);

    TEvents posted;
    TRecordingView windowView(posted);
    windowView.countsAreEvents = true;
    bool ended = false;
    TQueueForm form;
    std::thread worker([&] {
        TPostedRunView view(form.Queue(), windowView);
        Run(view);
        form.Queue().Post([&ended] { ended = true; });
    });
    while (!ended) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, INFINITE, QS_ALLINPUT);
        PumpMessages();
    }
    worker.join();
    EXPECT_EQ(posted, direct);
    // Every kind of call was among them.
    for (const std::string kind : {"clear", "log:", "connection:", "progress:", "count:", "running",
                                   "at rest", "choices on", "choices off", "error:"})
        EXPECT_FALSE(Filtered(posted, {kind}).empty()) << kind;
}

TEST_F(PostedRunView, ShowsNothingOnceItsQueueIsDetached) {
    TEvents posted;
    TRecordingView windowView(posted);
    TQueueForm form;
    TPostedRunView view(form.Queue(), windowView);
    view.Log("a");
    form.Queue().Detach();
    view.Log("b");
    PumpMessages();
    EXPECT_EQ(posted, TEvents{});
}

}  // namespace
}  // namespace tolvane::test

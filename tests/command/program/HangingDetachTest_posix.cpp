// A server that dies when everything has been read: the connection cannot be closed, and an
// interrupt and the deadline are heard all the same.

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

class HangingDetachTest : public TProgramTest {
protected:
    HangingDetachTest() : scale_(&AddScale(1)) {
        environment_["TOLVANE_DETACHING"] = Detaching().string();
    }

    std::filesystem::path Detaching() const { return folder_ / "detaching"; }
    std::unique_ptr<TProcess> StartHanging(TWords words) {
        words.insert(words.end(), {"--client-library", TOLVANE_HANGING_CLIENT});
        return Start(words);
    }
    bool IsDetaching() const {
        return Soon([this] { return std::filesystem::exists(Detaching()); });
    }

    TVirtualScale* scale_;
};

TEST_F(HangingDetachTest, TheFirstInterruptEndsTheProgram) {
    const std::unique_ptr<TProcess> process = StartHanging({"write"});
    ASSERT_TRUE(IsDetaching());
    process->Interrupt();
    ASSERT_TRUE(process->WaitFor(kSoon));
    const TRun run = Ended(*process);
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_EQ(run.err, "tolvane: Interrupted while the database was read; no scale was touched.\n");
    EXPECT_EQ(scale_->State().requests.total, 0);
}

// On a busy computer a deadline may pass before everything has been read; then a longer one is
// tried.
TEST_F(HangingDetachTest, TheDeadlineEndsTheProgram) {
    std::unique_ptr<TProcess> process;
    for (int seconds = 3; seconds <= 24 && !std::filesystem::exists(Detaching()); seconds *= 2) {
        process = StartHanging({"write", "--deadline", std::to_string(seconds) + "s"});
        ASSERT_TRUE(process->WaitFor(std::chrono::seconds(seconds) + kSoon));
    }
    ASSERT_TRUE(std::filesystem::exists(Detaching()));
    const TRun run = Ended(*process);
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.err,
              "tolvane: The deadline has passed while the database was read; no scale was "
              "touched.\n");
    EXPECT_EQ(scale_->State().requests.total, 0);
}

}  // namespace
}  // namespace tolvane::test

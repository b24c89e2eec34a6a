// A database file that another program has open: the embedded engine takes a file for itself.

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

constexpr const char* kWaits =
    "Another program has the database open; waiting up to 30 seconds for it.\n";

class SharedFileTest : public TProgramTest {
protected:
    SharedFileTest() { AddDeadScale(1); }
    ~SharedFileTest() override { Free(); }

    // Started while this process has the file, as another engine has it. An engine in this process
    // would pass the file on to those whom it starts.
    std::unique_ptr<TProcess> StartRefused(const TWords& words) {
        holder_ = open(Login().database.c_str(), O_RDONLY | O_CLOEXEC);
        if (flock(holder_, LOCK_EX | LOCK_NB) != 0) throw std::runtime_error("it is in use");
        return Start(words);
    }
    void Free() {
        if (holder_ != -1) close(holder_);
        holder_ = -1;
    }
    bool SaysThatItWaits() const {
        return Soon([this] { return GetFile(folder_ / "run" / "err") == kWaits; });
    }

    int holder_ = -1;
};

TEST_F(SharedFileTest, ACommandWaitsForTheFile) {
    const std::unique_ptr<TProcess> process = StartRefused({"status", "--json"});
    EXPECT_TRUE(SaysThatItWaits());
    Free();
    const TRun run = Ended(*process);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, kWaits);
    EXPECT_EQ(run.Scale(1).at("pending"), 3);
}

TEST_F(SharedFileTest, TheQuietSayNothingOfIt) {
    const std::unique_ptr<TProcess> process = StartRefused({"status", "-q"});
    EXPECT_FALSE(process->WaitFor(std::chrono::seconds(1)));
    Free();
    const TRun run = Ended(*process);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "");
}

TEST_F(SharedFileTest, AnInterruptEndsTheWaitAtOnce) {
    const std::unique_ptr<TProcess> process = StartRefused({"write"});
    EXPECT_TRUE(SaysThatItWaits());
    process->Interrupt();
    ASSERT_TRUE(process->WaitFor(kSoon));
    const TRun run = Ended(*process);
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_EQ(run.err, std::string(kWaits) +
                           "tolvane: Interrupted while the database was read; no scale was "
                           "touched.\n");
}

TEST_F(SharedFileTest, TheDeadlineEndsTheWait) {
    // Time enough to ask for the file first, on a busy computer too.
    const std::unique_ptr<TProcess> process = StartRefused({"write", "--deadline", "5s"});
    ASSERT_TRUE(process->WaitFor(kSoon));
    const TRun run = Ended(*process);
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.err, std::string(kWaits) +
                           "tolvane: The deadline has passed while the database was read; no scale "
                           "was touched.\n");
}

TEST_F(SharedFileTest, CommandsAtTheSameTimeAllReadTheFile) {
    std::vector<std::unique_ptr<TProcess>> processes;
    std::vector<std::string> names;
    const TWords words = WithShop({"status", "--json"});
    for (int i = 0; i < 6; ++i) {
        names.push_back("run" + std::to_string(i));
        std::filesystem::create_directory(folder_ / names.back());
        processes.push_back(StartIn(words, names.back()));
    }
    for (std::size_t i = 0; i < processes.size(); ++i) {
        const TRun run = Ended(*processes[i], names[i]);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(run.Scale(1).at("pending"), 3);
    }
}

// A run needs the file only until it has read the articles.
TEST_F(SharedFileTest, TheFileIsFreeWhileScalesAreWritten) {
    TVirtualScale& scale = AddScale(2);
    scale.SetFaults({.faults = {simulator::FaultFromText("slow,ms=300")}});
    const std::unique_ptr<TProcess> process = Start({"write"});
    ASSERT_TRUE(scale.WaitForRequests(2, kSoon));
    EXPECT_NO_THROW(TAttachment{Login()});
    scale.SetFaults({});
    EXPECT_EQ(Ended(*process).exitCode, 3) << "a scale is dead";
}

}  // namespace
}  // namespace tolvane::test

// A server that accepts the connection and says nothing: an interrupt and the deadline are heard
// all the same. The client library alone would wait for half a minute.

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <sstream>
#include <thread>

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

constexpr std::chrono::seconds kSoon{15};

class HangingDatabaseTest : public TProgramTest {
protected:
    HangingDatabaseTest() : scale_(&AddScale(1)) { server_.non_blocking(true); }

    // A command that hangs in the database, with these words behind it.
    std::unique_ptr<TProcess> StartHanging(TWords words) {
        words = WithShop(words);
        words.insert(words.end(),
                     {"--database",
                      "127.0.0.1/" + std::to_string(server_.local_endpoint().port()) + ":shop.fdb",
                      "--user", "SYSDBA", "--log", (folder_ / "log").string()});
        return StartBare(words);
    }
    bool IsCalled() {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        asio::error_code error = asio::error::would_block;
        while (error == asio::error::would_block && std::chrono::steady_clock::now() < end) {
            server_.accept(caller_, error);
            std::this_thread::yield();
        }
        return !error;
    }
    nlohmann::json LastEvent() const {
        std::istringstream lines(GetFile(folder_ / "log"));
        std::string last;
        for (std::string line; std::getline(lines, line);)
            last = line;
        return nlohmann::json::parse(last);
    }

    TVirtualScale* scale_;
    asio::io_context context_;
    asio::ip::tcp::acceptor server_{context_, {asio::ip::address_v4::loopback(), 0}};
    asio::ip::tcp::socket caller_{context_};
};

TEST_F(HangingDatabaseTest, TheFirstInterruptEndsTheProgram) {
    for (const char* command : {"write", "check"}) {
        const std::unique_ptr<TProcess> process = StartHanging({command});
        ASSERT_TRUE(IsCalled());
        process->Interrupt();
        ASSERT_TRUE(process->WaitFor(kSoon)) << command;
        const TRun run = Ended(*process);
        EXPECT_EQ(run.exitCode, 130) << run.err;
        caller_.close();
    }
    EXPECT_EQ(scale_->State().requests.total, 0);
}

TEST_F(HangingDatabaseTest, AnInterruptOfARunIsToldAndLogged) {
    const std::unique_ptr<TProcess> process = StartHanging({"write"});
    ASSERT_TRUE(IsCalled());
    process->Interrupt();
    const TRun run = Ended(*process);
    const std::string text = "Interrupted while the database was read; no scale was touched.";
    EXPECT_EQ(run.err, "tolvane: " + text + "\n");
    EXPECT_EQ(LastEvent().at("event"), "end");
    EXPECT_EQ(LastEvent().at("exitCode"), 130);
    EXPECT_EQ(LastEvent().at("error"), text);
}

TEST_F(HangingDatabaseTest, TheDeadlineEndsTheProgram) {
    const std::unique_ptr<TProcess> process = StartHanging({"write", "--deadline", "1s"});
    ASSERT_TRUE(process->WaitFor(kSoon));
    const TRun run = Ended(*process);
    EXPECT_EQ(run.exitCode, 4) << run.err;
    const std::string text =
        "The deadline has passed while the database was read; no scale was touched.";
    EXPECT_EQ(run.err, "tolvane: " + text + "\n");
    EXPECT_EQ(LastEvent().at("exitCode"), 4);
    EXPECT_EQ(LastEvent().at("error"), text);
    EXPECT_EQ(scale_->State().requests.total, 0);
}

}  // namespace
}  // namespace tolvane::test

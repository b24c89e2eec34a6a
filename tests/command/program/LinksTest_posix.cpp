#include "tests/command/program/ProgramTest.h"
#include "tests/support/FreeUdpPort.h"
#include "tests/support/OwnAddress_posix.h"

namespace tolvane::test {
namespace {

class LinksTest : public TProgramTest {
protected:
    // UDP scales have port 1001, and so has this computer; the scale has another address and the
    // command another port.
    TVirtualScale& AddUdp(int number) {
        const std::string host = OwnAddress(static_cast<unsigned>(number)).to_string();
        TScaleOptions options;
        options.host = host;
        options.tcpPort = std::nullopt;
        options.udpPort = 1001;
        TVirtualScale& scale = AddScale(number, TModel::Ets, std::move(options));
        AddToList(number, TModel::Ets, host, 1001, 2);
        return scale;
    }
    // On the line `line_`, as COM7.
    TVirtualScale& AddOnLine(int number) {
        TScaleOptions options;
        options.tcpPort = std::nullopt;
        options.pty = true;
        options.ptyLink = line_;
        TVirtualScale& scale = AddScale(number, TModel::Evl, std::move(options));
        AddToList(number, TModel::Evl, "COM7", 1001, 0);
        return scale;
    }

    std::string line_ = (folder_ / "line").string();
};

TEST_F(LinksTest, ASerialAUdpAndATcpScaleAreWrittenInOneRun) {
    const TVirtualScale& evl = AddOnLine(1);
    const TVirtualScale& ets = AddUdp(2);
    const TVirtualScale& s300 = AddScale(3);
    const TRun run = Run({"write", "--serial", "COM7=" + line_, "--udp-local-port", "0", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err << run.out;
    EXPECT_EQ(NumbersOf(evl), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(NumbersOf(ets), (std::vector<int>{1, 2, 4}));
    EXPECT_EQ(NumbersOf(s300), (std::vector<int>{1, 2}));
}

// The first scale's reply comes when the second one is asked.
TEST_F(LinksTest, ALateReplyOfAUdpScaleIsNotTakenForTheNextOnes) {
    TVirtualScale& late = AddUdp(1);
    late.SetFaults(
        {.faults = {simulator::FaultFromText("late,command=SetWeightMode,ms=6600,times=9")}});
    const TVirtualScale& other = AddUdp(2);
    const TRun run = Run({"write", "--udp-local-port", std::to_string(FreeUdpPort()), "--json"});
    EXPECT_EQ(run.Scale(1).at("outcome"), "not reached");
    EXPECT_EQ(run.Scale(2).at("outcome"), "done") << run.out;
    EXPECT_EQ(NumbersOf(other), (std::vector<int>{1, 2, 4}));
}

// Two names for one port would otherwise lock each other out.
TEST_F(LinksTest, TwoScalesOnOnePortOfTwoNamesAreWrittenOneAfterAnother) {
    AddOnLine(1);
    AddToList(2, TModel::Evl, "COM8", 1001, 0);
    const TRun run = Run({"test", "--serial", "COM7=" + line_ + ",COM8=" + line_, "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err << run.out;
}

// The second run cannot have the local port; it says so or waits.
TEST_F(LinksTest, TwoRunsWithUdpScalesShareTheLocalPort) {
    TVirtualScale& slow = AddUdp(1);
    slow.SetFaults(simulator::TFaultScript{.faults = {simulator::FaultFromText("slow,ms=200")}});
    const TVirtualScale& other = AddUdp(2);
    const std::string port = std::to_string(FreeUdpPort());
    const std::unique_ptr<TProcess> first =
        Start({"write", "--scale", "1", "--udp-local-port", port});
    ASSERT_TRUE(slow.WaitForRequests(2, std::chrono::seconds(30)));
    const TRun second = RunBeside({"write", "--scale", "2", "--udp-local-port", port, "--json"});
    EXPECT_EQ(second.exitCode, 11);
    EXPECT_EQ(second.Scale(2).at("error"),
              "another run on this computer holds the lock of the UDP port " + port);
    slow.SetFaults({});
    const TRun waiting = RunBeside(
        {"write", "--scale", "2", "--udp-local-port", port, "--lock-wait", "1m", "--json"});
    EXPECT_EQ(waiting.exitCode, 0) << waiting.err;
    EXPECT_EQ(NumbersOf(other), (std::vector<int>{1, 2, 4}));
    EXPECT_EQ(Ended(*first).exitCode, 0);
}

}  // namespace
}  // namespace tolvane::test

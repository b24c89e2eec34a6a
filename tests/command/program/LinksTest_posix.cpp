#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

using LinksTest = TProgramTest;

// UDP scales have port 1001, and so has this computer; the scale has another address and the
// command another port.
TEST_F(LinksTest, ASerialAUdpAndATcpScaleAreWrittenInOneRun) {
    const std::string port = (folder_ / "line").string();
    TScaleOptions onLine;
    onLine.tcpPort = std::nullopt;
    onLine.pty = true;
    onLine.ptyLink = port;
    const TVirtualScale& evl = AddScale(1, TModel::Evl, std::move(onLine));
    AddToList(1, TModel::Evl, "COM7", 1001, 0);
    TScaleOptions onUdp;
    onUdp.host = "127.0.0.2";
    onUdp.tcpPort = std::nullopt;
    onUdp.udpPort = 1001;
    const TVirtualScale& ets = AddScale(2, TModel::Ets, std::move(onUdp));
    AddToList(2, TModel::Ets, "127.0.0.2", 1001, 2);
    const TVirtualScale& s300 = AddScale(3);
    const TRun run = Run({"write", "--serial", "COM7=" + port, "--udp-local-port", "0", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err << run.out;
    EXPECT_EQ(NumbersOf(evl), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(NumbersOf(ets), (std::vector<int>{1, 2, 4}));
    EXPECT_EQ(NumbersOf(s300), (std::vector<int>{1, 2}));
}

}  // namespace
}  // namespace tolvane::test

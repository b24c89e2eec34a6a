#include "simulator/ProgramOptions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Bytes.h"
#include "tests/support/ScratchFolder.h"

namespace tolvane::simulator {
namespace {

TProgramOptions Parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "virtual-scale");
    return ParseProgramOptions(static_cast<int>(arguments.size()), arguments.data());
}

TEST(ProgramOptionsTest, WithoutOptions_ItIsAnEvlOnAnyTcpPort) {
    const TProgramOptions program = Parse({});
    EXPECT_FALSE(program.exitCode);
    EXPECT_EQ(program.scale.scale, DefaultProperties(TModel::Evl));
    EXPECT_EQ(program.scale.host, "127.0.0.1");
    EXPECT_EQ(program.scale.tcpPort, 0);
    EXPECT_FALSE(program.scale.udpPort);
    EXPECT_TRUE(program.scale.probes.empty());
}

TEST(ProgramOptionsTest, TheModel_SetsVersionAndCapacityUnlessTheyAreGiven) {
    EXPECT_EQ(Parse({"--model", "S300"}).scale.scale, DefaultProperties(TModel::S300));
    const TScaleProperties scale =
        Parse({"--capacity", "3000", "--version-text", "9.99", "--model", "S300", "--label-mode",
               "6", "--address", "5", "--code-table", "win"})
            .scale.scale;
    EXPECT_EQ(scale, (TScaleProperties{TModel::S300, "9.99", 3000, 6, 5, TCodeTable::Windows}));
}

TEST(ProgramOptionsTest, ThePage_IsOffUnlessItsPortIsGiven) {
    EXPECT_FALSE(Parse({}).page);
    const auto page = Parse({"--http", "8080"}).page;
    ASSERT_TRUE(page);
    EXPECT_EQ(page->host, "127.0.0.1");
    EXPECT_EQ(page->port, 8080);
    EXPECT_EQ(page->barcodePrefix, "20");
    const auto other =
        Parse({"--http", "0", "--http-host", "0.0.0.0", "--barcode-prefix", "29"}).page;
    ASSERT_TRUE(other);
    EXPECT_EQ(other->host, "0.0.0.0");
    EXPECT_EQ(other->barcodePrefix, "29");
    EXPECT_TRUE(Parse({"--http-host", "0.0.0.0"}).exitCode);
    EXPECT_TRUE(Parse({"--http", "1", "--barcode-prefix", "30"}).exitCode);
}

TEST(ProgramOptionsTest, AnotherLink_LeavesTcpOutUnlessItIsGiven) {
    const TProgramOptions udp = Parse({"--udp", "1001"});
    EXPECT_EQ(udp.scale.udpPort, 1001);
    EXPECT_FALSE(udp.scale.tcpPort);
    const TProgramOptions all =
        Parse({"--serial", "COM5", "--baud", "115200", "--pty", "/tmp/line", "--tcp", "1001"});
    EXPECT_EQ(all.scale.tcpPort, 1001);
    EXPECT_EQ(all.scale.serialDevice, "COM5");
    EXPECT_EQ(all.scale.baudRate, 115200U);
    EXPECT_TRUE(all.scale.pty);
    EXPECT_EQ(all.scale.ptyLink, "/tmp/line");
}

TEST(ProgramOptionsTest, Discovery_AnswersTheProbesOfItsKind) {
    const TProgramOptions all = Parse({"--discovery", "all", "--discovery-replies", "3"});
    ASSERT_EQ(all.scale.probes.size(), 3U);
    EXPECT_EQ(all.scale.probes[0].Port(), 65535);
    EXPECT_EQ(all.scale.probes[1].Port(), 1460);
    EXPECT_EQ(all.scale.probes[2].Port(), 36);
    EXPECT_EQ(all.scale.probes[2].replies, 3);
    const TProgramOptions tcp = Parse({"--discovery", "tcp", "--discovery-reply", "-"});
    ASSERT_EQ(tcp.scale.probes.size(), 1U);
    EXPECT_EQ(tcp.scale.probes[0].probe, TProbe::Converter);
    EXPECT_TRUE(tcp.scale.probes[0].reply.empty());
}

TEST(ProgramOptionsTest, DiscoveryReplies_MayBeNoneOrAFlood) {
    for (const char* count : {"0", "10000"}) {
        const TProgramOptions program = Parse({"--discovery", "tcp", "--discovery-replies", count});
        ASSERT_FALSE(program.exitCode) << count;
        EXPECT_EQ(program.scale.probes.at(0).replies, std::stoi(count));
    }
    for (const char* count : {"-1", "10001", "many"})
        EXPECT_NE(Parse({"--discovery", "tcp", "--discovery-replies", count}).exitCode.value_or(0),
                  0)
            << count;
}

TEST(ProgramOptionsTest, Faults_AreReadInOrder) {
    const TFaultScript faults = Parse({"--fault", "error,command=SetPrice,from=3,code=7", "--fault",
                                       "bad-checksum,percent=5", "--seed", "42"})
                                    .scale.faults;
    ASSERT_EQ(faults.faults.size(), 2U);
    EXPECT_EQ(faults.faults[0].kind, TFaultKind::Error);
    EXPECT_EQ(faults.faults[0].command, 0x49);
    EXPECT_EQ(faults.faults[0].from, 3);
    EXPECT_EQ(faults.faults[0].code, 7);
    EXPECT_EQ(faults.faults[1].percent, 5);
    EXPECT_EQ(faults.seed, 42U);
    EXPECT_THROW(Parse({"--fault", "lazy"}), std::runtime_error);
}

TEST(ProgramOptionsTest, ALoadedState_IsOverruledByTheCommandLine) {
    TScaleState state;
    state.scale = {TModel::Ets, "7.77", 500, 1, 9, TCodeTable::Windows};
    state.articles[3].number = 3;
    const TScratchFolder folder;
    const std::string path = (folder / "state.json").string();
    SaveState(state, path);
    const TScaleOptions scale = Parse({"--load", path.c_str(), "--capacity", "600"}).scale;
    EXPECT_EQ(scale.scale, (TScaleProperties{TModel::Ets, "7.77", 600, 1, 9, TCodeTable::Windows}));
    ASSERT_TRUE(scale.initialState);
    EXPECT_EQ(scale.initialState->articles.count(3), 1U);
}

TEST(ProgramOptionsTest, AWrongOption_EndsTheProgram) {
    EXPECT_NE(Parse({"--model", "XYZ"}).exitCode.value_or(0), 0);
    EXPECT_NE(Parse({"--capacity", "65536"}).exitCode.value_or(0), 0);
    EXPECT_NE(Parse({"--save-on-weighing"}).exitCode.value_or(0), 0);
    EXPECT_EQ(Parse({"--help"}).exitCode, 0);
    EXPECT_EQ(Parse({"--version"}).exitCode, 0);
}

}  // namespace
}  // namespace tolvane::simulator

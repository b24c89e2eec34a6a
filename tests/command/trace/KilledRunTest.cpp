#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <thread>

#include "Tshark.h"
#include "command/TraceFile.h"
#include "tests/unit/command/CaptureReader.h"

namespace tolvane {
namespace {

using std::filesystem::path;

const TCmdBuffer kWeightMode = {0x04, 0x0D, 0x14, 0x50, 0x50, 0x03};

// A run that adds packets for ever.
[[noreturn]] void AddForEver(const path& file) {
    TTraceFile trace(file, std::chrono::system_clock::now);
    const std::uint32_t scale = trace.AddScale({3, "", "TCP (h:1)", 1, 0});
    for (;;)
        trace.Add(scale, {TTraceDirection::Request, 0, kWeightMode, ""});
}

std::uintmax_t SizeOf(const path& file) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    return error ? 0 : size;
}

// Kills such a run when its file has reached a size.
void KillAt(const path& file, std::uintmax_t size) {
    const pid_t run = fork();
    ASSERT_GE(run, 0);
    if (run == 0) AddForEver(file);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (SizeOf(file) < size && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    kill(run, SIGKILL);
    ASSERT_EQ(waitpid(run, nullptr, 0), run);
    ASSERT_GE(SizeOf(file), size);
}

// The system may stop a write between two pages of memory.
TEST(KilledRun, LosesNoMoreThanItsLastPacket) {
    const TScratchFolder folder;
    std::mt19937 random(std::random_device{}());
    for (int i = 0; i < 30; ++i) {
        const path file = folder / std::to_string(i);
        ASSERT_NO_FATAL_FAILURE(
            KillAt(file, std::uniform_int_distribution<unsigned>(1000, 20000)(random)));
        const test::TCapture capture = test::ReadCapture(file);
        EXPECT_GE(capture.packets.size(), 10U);
        for (const test::TCapturedPacket& packet : capture.packets)
            EXPECT_EQ(packet.content.substr(12), "\x04\x0D\x14\x50\x50\x03");
    }
}

TEST(KilledRun, LeavesAFileThatOpens) {
    const TScratchFolder folder;
    const path file = folder / "run.pcapng";
    ASSERT_NO_FATAL_FAILURE(KillAt(file, 5000));
    const test::TCapture capture = test::ReadCapture(file);
    test::TTshark tshark;
    tshark.isCut = capture.isCut;
    EXPECT_EQ(tshark.Field(file, "tolvane.command"),
              std::vector<std::string>(capture.packets.size(), "0x3c"));
}

TEST(KilledRun, AFileThatEndsWithinAPacketShowsThoseBefore) {
    const TScratchFolder folder;
    const path file = folder / "run.pcapng";
    TTraceFile trace(file, std::chrono::system_clock::now);
    const std::uint32_t scale = trace.AddScale({3, "", "TCP (h:1)", 1, 0});
    for (int i = 0; i < 3; ++i)
        trace.Add(scale, {TTraceDirection::Request, 0, kWeightMode, ""});
    const std::string whole = GetFile(file);
    test::TTshark tshark;
    tshark.isCut = true;
    // A packet's block has 64 bytes.
    for (const std::size_t missing : {1U, 30U, 63U}) {
        PutFile(folder / "cut.pcapng", whole.substr(0, whole.size() - missing));
        EXPECT_EQ(tshark.Field(folder / "cut.pcapng", "tolvane.command"),
                  (std::vector<std::string>{"0x3c", "0x3c"}));
    }
}

}  // namespace
}  // namespace tolvane

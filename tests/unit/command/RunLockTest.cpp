#include "command/RunLock.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/RecordingClock.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/command/Shop.h"

namespace tolvane::test {
namespace {

using std::filesystem::path;

TRunLock Lock(const path& folder, const TScaleRec& scale, TRecordingClock& clock,
              TMilliseconds wait = TMilliseconds(0)) {
    return {folder, scale, wait, clock};
}

TScaleRec At(TScaleRec scale, const char* address) {
    scale.TCPAddress = address;
    return scale;
}

TScaleRec Numbered(TScaleRec scale, std::int32_t number) {
    scale.ScaleNumb = number;
    return scale;
}

TEST(RunLockName, IsWhereTheScaleIs) {
    EXPECT_EQ(RunLockName(TcpScale()), "tcp-10.0.0.5-1001.lock");
    EXPECT_EQ(RunLockName(UdpScale()), "udp-10.0.0.5.lock");
    EXPECT_EQ(RunLockName(SerialScale()), "com-COM1.lock");
}

TEST(RunLockName, IsTheSameHoweverTheAddressIsWritten) {
    EXPECT_EQ(RunLockName(At(TcpScale(), "010.0. 0.05")), "tcp-10.0.0.5-1001.lock");
    EXPECT_EQ(RunLockName(At(SerialScale(), " com01 ")), "com-COM1.lock");
    TScaleRec other = UdpScale();
    other.TCPPort = 5001;  // without a meaning for UDP
    EXPECT_EQ(RunLockName(other), "udp-10.0.0.5.lock");
}

TEST(RunLockName, DependsOnNothingElse) {
    TScaleRec other = TcpScale();
    other.ScaleNumb = 4;
    other.ScaleName = "Meat";
    other.Checked = true;
    other.BaudRate = 3;
    other.ScaleType = kScaleTypeEvl;
    other.Encoding = 0;
    other.ScaleAddr = 9;
    EXPECT_EQ(RunLockName(other), RunLockName(TcpScale()));
    other.TCPPort = 1002;
    EXPECT_EQ(RunLockName(other), "tcp-10.0.0.5-1002.lock");
}

TEST(RunLockName, HoldsNothingThatNoFileNameMayHold) {
    EXPECT_EQ(RunLockName(At(SerialScale(), "/dev/ttyUSB0")), "com-_dev_ttyUSB0.lock");
    EXPECT_EQ(RunLockName(At(TcpScale(), "a:b*\\\"..")), "tcp-a_b___..-1001.lock");
    TScaleRec unknown = TcpScale();
    unknown.CommType = 9;
    EXPECT_EQ(RunLockName(unknown), "unknown-10.0.0.5.lock");
}

TEST(RunLock, ExcludesOtherRunsOfTheSameScaleOnly) {
    const TScratchFolder folder;
    TRecordingClock clock;
    const TScaleRec sameScale = Numbered(TcpScale(), 17);
    {
        const TRunLock first = Lock(folder.Path(), TcpScale(), clock);
        EXPECT_TRUE(first.IsHeld());
        EXPECT_EQ(first.Refusal(), "");
        const TRunLock second = Lock(folder.Path(), sameScale, clock);
        EXPECT_FALSE(second.IsHeld());
        EXPECT_EQ(second.State(), TRunLockState::HeldByOther);
        EXPECT_EQ(second.OtherProcess(), static_cast<std::uint32_t>(getpid()));
        EXPECT_EQ(second.Refusal(), "another run (process " + std::to_string(getpid()) +
                                        ") holds the lock of this scale");
        EXPECT_TRUE(Lock(folder.Path(), Numbered(UdpScale(), 4), clock).IsHeld());
        EXPECT_TRUE(Lock(folder.Path(), Numbered(SerialScale(), 5), clock).IsHeld());
    }
    EXPECT_TRUE(Lock(folder.Path(), sameScale, clock).IsHeld());
    EXPECT_TRUE(clock.pauses.empty());
}

// Two lists of scales with another scale 3 each, and one state folder.
TEST(RunLock, ExcludesOtherRunsOfTheSameLedger) {
    const TScratchFolder folder;
    TRecordingClock clock;
    EXPECT_EQ(LedgerLockName(TcpScale()), "scale-3.lock");
    const TRunLock first = Lock(folder.Path(), TcpScale(), clock);
    const TRunLock second = Lock(folder.Path(), At(TcpScale(), "10.0.0.6"), clock);
    EXPECT_EQ(second.State(), TRunLockState::HeldByOther);
    EXPECT_EQ(second.Refusal(), "another run (process " + std::to_string(getpid()) +
                                    ") holds the lock of the ledger of this scale");
    EXPECT_TRUE(Lock(folder.Path(), Numbered(At(TcpScale(), "10.0.0.6"), 4), clock).IsHeld())
        << "the refused one holds it still";
}

TEST(RunLock, ExcludesRunsWithAnotherStateFolder) {
    const TScratchFolder folder;
    TRecordingClock clock;
    const std::string name = "test " + folder.Path().string();
    const std::vector<TComputerLock> locks = {{name, "this scale"}, {name + "'s port", "a port"}};
    const auto lock = [&](const char* sub, const std::vector<TComputerLock>& computer) {
        return TRunLock(folder / sub, TcpScale(), TMilliseconds(0), clock, nullptr, computer);
    };
    std::optional<TRunLock> first(lock("a", locks));
    EXPECT_TRUE(first->IsHeld());
    const TRunLock second = lock("b", {locks[1]});
    EXPECT_EQ(second.State(), TRunLockState::HeldByOther);
    EXPECT_FALSE(second.OtherProcess());
    EXPECT_EQ(second.Refusal(), "another run on this computer holds the lock of a port");
    EXPECT_TRUE(lock("b", {}).IsHeld()) << "the refused one holds its files still";
    first.reset();
    EXPECT_TRUE(lock("b", locks).IsHeld());
}

TEST(RunLock, WaitsForARunWithAnotherStateFolder) {
    const TScratchFolder folder;
    TRecordingClock clock;
    const std::vector<TComputerLock> locks = {{"test " + folder.Path().string(), "this scale"}};
    std::optional<TRunLock> first(std::in_place, folder / "a", TcpScale(), TMilliseconds(0), clock,
                                  nullptr, locks);
    clock.onLook = [&] {
        if (clock.Passed() >= TMilliseconds(500)) first.reset();
    };
    const TRunLock second(folder / "b", TcpScale(), TMilliseconds(10'000), clock, nullptr, locks);
    EXPECT_TRUE(second.IsHeld());
    EXPECT_EQ(second.Refusal(), "");
}

TEST(RunLock, WaitsAsLongAsItIsTold) {
    const TScratchFolder folder;
    TRecordingClock clock;
    const TRunLock first = Lock(folder.Path(), TcpScale(), clock);
    EXPECT_FALSE(Lock(folder.Path(), TcpScale(), clock, TMilliseconds(1234)).IsHeld());
    EXPECT_EQ(clock.Passed(), TMilliseconds(1234));
}

TEST(RunLock, IsHeldOnceTheOtherRunEnds) {
    const TScratchFolder folder;
    TRecordingClock clock;
    std::optional<TRunLock> first(std::in_place, folder.Path(), TcpScale(), TMilliseconds(0),
                                  clock);
    clock.onLook = [&] {
        if (clock.Passed() >= TMilliseconds(500)) first.reset();
    };
    EXPECT_TRUE(Lock(folder.Path(), TcpScale(), clock, TMilliseconds(10'000)).IsHeld());
    EXPECT_GE(clock.Passed(), TMilliseconds(500));
    EXPECT_LT(clock.Passed(), TMilliseconds(1000));
}

TEST(RunLock, MakesItsFolder) {
    const TScratchFolder folder;
    TRecordingClock clock;
    const TRunLock lock = Lock(folder / "state" / "locks", TcpScale(), clock);
    EXPECT_TRUE(lock.IsHeld());
    EXPECT_TRUE(std::filesystem::exists(folder / "state" / "locks" / "tcp-10.0.0.5-1001.lock"));
}

TEST(RunLock, IsNotHeldWhereItCannotBeCreated) {
    const TScratchFolder folder;
    PutFile(folder / "state", "no folder");
    TRecordingClock clock;
    const TRunLock lock = Lock(folder / "state", TcpScale(), clock, TMilliseconds(1000));
    EXPECT_FALSE(lock.IsHeld());
    EXPECT_EQ(lock.State(), TRunLockState::Impossible);
    EXPECT_FALSE(lock.OtherProcess());
    const std::string start = "the lock " + (folder / "state" / "tcp-10.0.0.5-1001.lock").string() +
                              " cannot be created: ";
    EXPECT_TRUE(lock.Refusal().starts_with(start)) << lock.Refusal();
    EXPECT_GT(lock.Refusal().size(), start.size());
    EXPECT_TRUE(clock.pauses.empty());
}

TEST(RunLock, IsSeenWithoutBeingHeld) {
    const TScratchFolder folder;
    TRecordingClock clock;
    EXPECT_FALSE(IsRunLockHeld(folder / "none", TcpScale()));
    EXPECT_FALSE(IsRunLockHeld(folder.Path(), TcpScale()));
    {
        const TRunLock lock = Lock(folder.Path(), TcpScale(), clock);
        EXPECT_TRUE(IsRunLockHeld(folder.Path(), TcpScale()));
        EXPECT_FALSE(IsRunLockHeld(folder.Path(), Numbered(UdpScale(), 4)));
    }
    EXPECT_FALSE(IsRunLockHeld(folder.Path(), TcpScale()));
    // What a killed run has left.
    PutFile(folder / LedgerLockName(TcpScale()), "1\n");
    EXPECT_FALSE(IsRunLockHeld(folder.Path(), TcpScale()));
}

}  // namespace
}  // namespace tolvane::test

#include <gtest/gtest.h>

#include "command/Ledger.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/command/Shop.h"

namespace tolvane::test {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using std::filesystem::path;

// Of a scale that was written to at noon with the usual choices.
void SaveLedgerOf(const TScaleRec& scale, const path& folder) {
    TLedger ledger = LoadAt(folder, kNoon, scale);
    ledger.Confirm(Report());
    ledger.Claim(7, 70, kNoon);
    ledger.Claim(8, 80, kNoon);
    ledger.Save(kNoon);
}

// Why the ledger of `before` is dropped for `now`; "kept" when it is not.
std::string ReasonOf(const TScaleRec& before, const TScaleRec& now,
                     const TLineChoices& choices = {}) {
    const TScratchFolder folder;
    SaveLedgerOf(before, folder.Path());
    const TLedger ledger = LoadAt(folder.Path(), kNoon, now, choices);
    if (ledger.Claims().size() == 2) return "kept" + ledger.DropReason();
    EXPECT_TRUE(ledger.Claims().empty());
    return ledger.DropReason();
}

std::string ReasonAfter(seconds time, seconds maxAge) {
    const TScratchFolder folder;
    SaveLedgerOf(TcpScale(), folder.Path());
    return TLedger::Load(folder.Path(), TcpScale(), {}, kNoon + time, maxAge).DropReason();
}

template <class T, class TValue>
TScaleRec With(TScaleRec scale, T TScaleRec::*member, const TValue& value) {
    scale.*member = static_cast<T>(value);
    return scale;
}

TEST(LedgerTrust, AsksForTheSameNetworkScale) {
    const TScaleRec tcp = TcpScale();
    EXPECT_EQ(ReasonOf(tcp, tcp), "kept");
    EXPECT_EQ(ReasonOf(tcp, With(tcp, &TScaleRec::TCPAddress, "10.0.0.6")),
              "the address differs: 10.0.0.6, before 10.0.0.5");
    EXPECT_EQ(ReasonOf(tcp, With(tcp, &TScaleRec::TCPPort, 1002)),
              "the port differs: 1002, before 1001");
    EXPECT_EQ(ReasonOf(tcp, With(tcp, &TScaleRec::CommType, kCommUdp)),
              "the connection differs: udp, before tcp");
    EXPECT_EQ(ReasonOf(tcp, With(tcp, &TScaleRec::ScaleType, kScaleTypeEts)),
              "the model differs: ETS, before S300");
    EXPECT_EQ(ReasonOf(tcp, With(tcp, &TScaleRec::ScaleType, 77)),
              "the model differs: 77, before S300");
    EXPECT_EQ(ReasonOf(tcp, With(tcp, &TScaleRec::Encoding, 0)),
              "the code table differs: 0, before 2");
}

TEST(LedgerTrust, AsksForTheSameSerialScale) {
    const TScaleRec serial = SerialScale();
    EXPECT_EQ(ReasonOf(serial, serial), "kept");
    EXPECT_EQ(ReasonOf(serial, With(serial, &TScaleRec::TCPAddress, "COM2")),
              "the address differs: COM2, before COM1");
    EXPECT_EQ(ReasonOf(serial, With(serial, &TScaleRec::TCPAddress, "")),
              "the address differs: none, before COM1");
    EXPECT_EQ(ReasonOf(serial, With(serial, &TScaleRec::BaudRate, 0)),
              "the speed differs: 9600, before 19200");
    EXPECT_EQ(ReasonOf(serial, With(serial, &TScaleRec::ScaleAddr, 8)),
              "the bus address differs: 8, before 7");
}

TEST(LedgerTrust, DoesNotMindWhatHasNoMeaning) {
    TScaleRec tcp = With(TcpScale(), &TScaleRec::ScaleName, "Meat");
    tcp.Checked = true;
    tcp.BaudRate = 4;
    tcp.ScaleAddr = 9;
    tcp.TCPAddress = "010.000.000.005";
    EXPECT_EQ(ReasonOf(TcpScale(), tcp), "kept");
    EXPECT_EQ(ReasonOf(UdpScale(), With(UdpScale(), &TScaleRec::TCPPort, 5001)), "kept");
    EXPECT_EQ(ReasonOf(SerialScale(), With(SerialScale(), &TScaleRec::TCPPort, 5001)), "kept");
}

TEST(LedgerTrust, AsksForTheSameChoices) {
    const TScaleRec tcp = TcpScale();
    EXPECT_EQ(ReasonOf(tcp, tcp, {.price = kWholesalePrice}),
              "the choice of the price differs: wholesale, before retail");
    EXPECT_EQ(ReasonOf(tcp, tcp, {.name1 = 3}),
              "the choice of the first name differs: 3, before 1");
    EXPECT_EQ(ReasonOf(tcp, tcp, {.name2 = 0}),
              "the choice of the second name differs: 0, before 2");
}

TEST(LedgerTrust, AsksForTheFileOfTheSameNumber) {
    const TScratchFolder folder;
    SaveLedgerOf(TcpScale(), folder.Path());
    std::filesystem::rename(folder / "scale-3.json", folder / "scale-4.json");
    EXPECT_EQ(LoadAt(folder.Path(), kNoon, With(TcpScale(), &TScaleRec::ScaleNumb, 4)).DropReason(),
              "the number differs: 4, before 3");
}

// A scale that is written to in another way holds what it held; another scale does not.
TEST(LedgerTrust, KeepsTheNumbersOfTheSameScale) {
    const auto numbersFor = [](const TScaleRec& before, const TScaleRec& now,
                               const TLineChoices& choices, std::chrono::sys_seconds time) {
        const TScratchFolder folder;
        SaveLedgerOf(before, folder.Path());
        TLedger ledger = LoadAt(folder.Path(), time, now, choices);
        EXPECT_TRUE(ledger.Claims().empty());
        ledger.Save(time);
        return LoadAt(folder.Path(), time, now, choices).Numbers();
    };
    const std::set<std::int32_t> both = {7, 8};
    const std::set<std::int32_t> none;
    const TScaleRec tcp = TcpScale();
    const TScaleRec serial = SerialScale();
    EXPECT_EQ(numbersFor(tcp, tcp, {.price = kWholesalePrice}, kNoon), both);
    EXPECT_EQ(numbersFor(tcp, tcp, {.name1 = 3}, kNoon), both);
    EXPECT_EQ(numbersFor(tcp, tcp, {.name2 = 0}, kNoon), both);
    EXPECT_EQ(numbersFor(tcp, With(tcp, &TScaleRec::Encoding, 0), {}, kNoon), both);
    EXPECT_EQ(numbersFor(serial, With(serial, &TScaleRec::BaudRate, 0), {}, kNoon), both);
    EXPECT_EQ(numbersFor(tcp, tcp, {}, kNoon - hours(1)), both) << "the clock is set back";
    EXPECT_EQ(numbersFor(tcp, With(tcp, &TScaleRec::TCPAddress, "10.0.0.6"), {}, kNoon), none);
    EXPECT_EQ(numbersFor(tcp, With(tcp, &TScaleRec::TCPPort, 1002), {}, kNoon), none);
    EXPECT_EQ(numbersFor(tcp, With(tcp, &TScaleRec::CommType, kCommUdp), {}, kNoon), none);
    EXPECT_EQ(numbersFor(tcp, With(tcp, &TScaleRec::ScaleType, kScaleTypeEts), {}, kNoon), none);
    EXPECT_EQ(numbersFor(serial, With(serial, &TScaleRec::ScaleAddr, 8), {}, kNoon), none);
    TScaleRec moved = With(tcp, &TScaleRec::Encoding, 0);
    moved.TCPAddress = "10.0.0.6";
    EXPECT_EQ(numbersFor(tcp, moved, {.price = kWholesalePrice}, kNoon), none);
}

// What another scale reported and what was done with it says nothing of this one.
TEST(LedgerTrust, ForgetsWhatAnotherScaleReported) {
    const TScratchFolder folder;
    SaveLedgerOf(TcpScale(), folder.Path());
    TLedger ledger = LoadAt(folder.Path(), kNoon);
    TLastRun run;
    run.start = kNoon;
    ledger.SetLastRun(run);
    ledger.SetMayBeProgramming(true);
    ledger.Save(kNoon);
    const TLedger same = LoadAt(folder.Path(), kNoon, With(TcpScale(), &TScaleRec::Encoding, 0));
    EXPECT_TRUE(same.Report());
    EXPECT_TRUE(same.LastRun());
    const TLedger other =
        LoadAt(folder.Path(), kNoon, With(TcpScale(), &TScaleRec::TCPAddress, "10.0.0.6"));
    EXPECT_FALSE(other.Report());
    EXPECT_FALSE(other.LastRun());
    EXPECT_TRUE(other.MayBeProgramming()) << "the scale may only have got another address";
}

TEST(LedgerTrust, KeepsTheNumbersOfAScaleThatReportsTheSameCapacity) {
    const std::pair<TScaleReport, std::size_t> cases[] = {
        {{.version = "1.05", .maxPlu = 4000, .labelMode = 1}, 2},
        {{.version = "1.04", .maxPlu = 4000, .labelMode = 0}, 2},
        {{.version = "1.04", .maxPlu = 2000, .labelMode = 1}, 0},
        {{.version = "1.05", .maxPlu = 2000, .labelMode = 1}, 0}};
    for (const auto& [report, kept] : cases) {
        const TScratchFolder folder;
        SaveLedgerOf(TcpScale(), folder.Path());
        TLedger ledger = LoadAt(folder.Path(), kNoon);
        ledger.Confirm(report);
        EXPECT_TRUE(ledger.Claims().empty());
        EXPECT_EQ(ledger.Numbers().size(), kept) << report.version << " " << report.maxPlu;
    }
}

TEST(LedgerTrust, LastsAsLongAsItIsTold) {
    EXPECT_EQ(ReasonAfter(kWeek, kWeek), "");
    EXPECT_EQ(ReasonAfter(kWeek + seconds(1), kWeek), "older than 7 days: 2 of 2 articles");
    EXPECT_EQ(ReasonAfter(hours(25), hours(24)), "older than 1 day: 2 of 2 articles");
    EXPECT_EQ(ReasonAfter(hours(40), hours(36)), "older than 36 hours: 2 of 2 articles");
    EXPECT_EQ(ReasonAfter(hours(1), std::chrono::minutes(30)),
              "older than 30 minutes: 2 of 2 articles");
    EXPECT_EQ(ReasonAfter(seconds(2), seconds(1)), "older than 1 second: 2 of 2 articles");
    EXPECT_EQ(ReasonAfter(seconds(1), seconds(0)), "older than 0 days: 2 of 2 articles");
}

// Saving alone must not renew what no scale has acknowledged again.
TEST(LedgerTrust, EndsForEachArticleByItself) {
    const TScratchFolder folder;
    SaveLedgerOf(TcpScale(), folder.Path());
    TLedger second = LoadAt(folder.Path(), kNoon + kWeek);
    second.Confirm(Report());
    second.Claim(8, 80, kNoon + kWeek);
    second.Save(kNoon + kWeek);
    const TLedger third = LoadAt(folder.Path(), kNoon + kWeek + hours(1));
    EXPECT_EQ(third.DropReason(), "older than 7 days: 1 of 2 articles");
    EXPECT_EQ(third.Claims(), (TClaims{{8, {80, kNoon + kWeek}}}));
}

TEST(LedgerTrust, EndsWithAClockThatIsSetBack) {
    EXPECT_EQ(ReasonAfter(-hours(1), kWeek),
              "the clock has been set back: the ledger is from 2024-05-01T12:00:00Z");
    EXPECT_EQ(ReasonAfter(-seconds(61), kWeek),
              "the clock has been set back: the ledger is from 2024-05-01T12:00:00Z");
    EXPECT_EQ(ReasonAfter(-seconds(60), kWeek), "") << "a clock that has been put right";
}

TEST(LedgerTrust, EndsWithAClockThatIsSetBackDuringARun) {
    const TScratchFolder folder;
    SaveLedgerOf(TcpScale(), folder.Path());
    TLedger ledger = LoadAt(folder.Path(), kNoon);
    ledger.Save(kNoon - hours(5));
    EXPECT_EQ(LoadAt(folder.Path(), kNoon - hours(4)).DropReason(),
              "the clock has been set back: the ledger is from 2024-05-01T12:00:00Z");
}

TEST(LedgerTrust, AsksForAScaleThatReportsTheSame) {
    const std::pair<TScaleReport, std::string> cases[] = {
        {{.version = "1.04", .maxPlu = 4000, .labelMode = 1}, ""},
        {{.version = "1.05", .maxPlu = 4000, .labelMode = 1},
         "the version of the scale differs: 1.05, before 1.04"},
        {{.version = "1.04", .maxPlu = 2000, .labelMode = 1},
         "the capacity of the scale differs: 2000, before 4000"},
        {{.version = "1.04", .maxPlu = 4000, .labelMode = 0},
         "the label mode of the scale differs: 0, before 1"}};
    for (const auto& [report, reason] : cases) {
        const TScratchFolder folder;
        SaveLedgerOf(TcpScale(), folder.Path());
        TLedger ledger = LoadAt(folder.Path(), kNoon);
        EXPECT_EQ(ledger.Claims().size(), 2U);
        ledger.Confirm(report);
        EXPECT_EQ(ledger.DropReason(), reason);
        EXPECT_EQ(ledger.Claims().size(), reason.empty() ? 2U : 0U);
        EXPECT_EQ(ledger.Report(), report);
    }
}

TEST(LedgerTrust, TellsNoReasonWhereThereIsNothingToDrop) {
    const TScratchFolder folder;
    TLedger ledger = LoadAt(folder.Path(), kNoon);
    ledger.Confirm(Report());
    ledger.Save(kNoon);
    ledger = LoadAt(folder.Path(), kNoon, SerialScale());
    ledger.Confirm({});
    ledger.Drop("no use");
    EXPECT_EQ(ledger.DropReason(), "");
}

TEST(LedgerTrust, TellsEveryReason) {
    const TScratchFolder folder;
    SaveLedgerOf(TcpScale(), folder.Path());
    TLedger ledger = LoadAt(folder.Path(), kNoon);
    ledger.Confirm(Report());
    ledger.Claim(8, 80, kNoon + kWeek);
    ledger.Save(kNoon + kWeek);
    ledger = LoadAt(folder.Path(), kNoon + kWeek + hours(1));
    ledger.Drop("the scale's reply does not fit");
    EXPECT_EQ(ledger.DropReason(),
              "older than 7 days: 1 of 2 articles; the scale's reply does not fit");
    EXPECT_TRUE(ledger.Claims().empty());
}

// Only who saves, and so holds the lock, may touch the file: another run may have made it good
// meanwhile.
TEST(LedgerTrust, LeavesADamagedFileToTheFirstSaveWhichKeepsItBeside) {
    const TScratchFolder folder;
    PutFile(folder / "scale-3.json", "[KASI]");
    TLedger ledger = LoadAt(folder.Path(), kNoon);
    EXPECT_EQ(ledger.DropReason(), "the file is damaged: it does not begin as a ledger does");
    EXPECT_EQ(folder.FileCount(), 1U);
    ledger.Save(kNoon);
    EXPECT_EQ(GetFile(folder / "scale-3.json.damaged"), "[KASI]");
    EXPECT_EQ(LoadAt(folder.Path(), kNoon).DropReason(), "");
    PutFile(folder / "scale-3.json", "");
    ledger = LoadAt(folder.Path(), kNoon);
    EXPECT_EQ(ledger.DropReason(), "the file is damaged: it is empty");
    ledger.Save(kNoon);
    ledger.Save(kNoon);
    EXPECT_EQ(GetFile(folder / "scale-3.json.damaged"), "");
    EXPECT_EQ(folder.FileCount(), 2U);
}

TEST(LedgerTrust, KeepsTheFileOfANewerVersionBeside) {
    const std::string text =
        "{\n  \"checksum\": \"63027cb585348451\",\n  \"format\": 2,\n  \"anything\": []\n}\n";
    const TScratchFolder folder;
    PutFile(folder / "scale-3.json", text);
    TLedger ledger = LoadAt(folder.Path(), kNoon);
    EXPECT_EQ(ledger.DropReason(),
              "the file was made by a newer version of this program (format 2)");
    ledger.Save(kNoon);
    EXPECT_EQ(GetFile(folder / "scale-3.json.newer"), text);
    EXPECT_EQ(folder.FileCount(), 2U);
}

}  // namespace
}  // namespace tolvane::test

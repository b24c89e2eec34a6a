#include "command/Ledger.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

#include "tests/support/ScratchFolder.h"
#include "tests/unit/command/Shop.h"

namespace tolvane::test {
namespace {

using std::chrono::seconds;
using std::filesystem::path;

constexpr std::array kBoth = {7, 12};

path FileIn(const TScratchFolder& folder) {
    return folder / "scale-3.json";
}

// A ledger that claims articles 7 and 12, saved at noon.
TLedger Saved(const TScratchFolder& folder) {
    TLedger ledger = LoadAt(folder.Path(), kNoon);
    ledger.Confirm(Report());
    ledger.Claim(7, 0x0123456789abcdef, kNoon);
    ledger.Claim(12, 0xffffffffffffffff, kNoon);
    ledger.Save(kNoon);
    return ledger;
}

TEST(Ledger, IsEmptyWithoutAReasonBeforeTheFirstRun) {
    const TScratchFolder folder;
    const TLedger ledger = LoadAt(folder / "none", kNoon);
    EXPECT_TRUE(ledger.Claims().empty());
    EXPECT_EQ(ledger.DropReason(), "");
    EXPECT_FALSE(ledger.Saved());
    EXPECT_FALSE(ledger.Report());
    EXPECT_FALSE(ledger.LastRun());
    EXPECT_FALSE(ledger.MayBeProgramming());
    EXPECT_FALSE(std::filesystem::exists(folder / "none"));
}

TEST(Ledger, HoldsWhatWasSaved) {
    const TScratchFolder folder;
    const TLastRun run{.start = kNoon,
                       .end = kNoon + seconds(90),
                       .outcome = TRunOutcome::NotReached,
                       .error = std::string("\xC2\xE5\xE7\xED\xE0 \"3\"\r\n\x98"),
                       .written = 1,
                       .unchanged = 2,
                       .refused = 3,
                       .leftOut = 5,
                       .pending = 4};
    TLedger saved = Saved(folder);
    saved.SetMayBeProgramming(true);
    saved.SetLastRun(run);
    saved.Save(kNoon + seconds(90));
    const TLedger ledger = LoadAt(folder.Path(), kNoon + seconds(100));
    EXPECT_EQ(ledger.DropReason(), "");
    const TClaims expected = {{7, {0x0123456789abcdef, kNoon}}, {12, {0xffffffffffffffff, kNoon}}};
    EXPECT_EQ(ledger.Claims(), expected);
    EXPECT_EQ(ledger.Saved(), kNoon + seconds(90));
    EXPECT_EQ(ledger.Report(), Report());
    EXPECT_EQ(ledger.LastRun(), run);
    EXPECT_TRUE(ledger.MayBeProgramming());
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(Ledger, KeepsTheScalesApart) {
    const TScratchFolder folder;
    Saved(folder);
    TScaleRec other = TcpScale();
    other.ScaleNumb = 4;
    EXPECT_TRUE(LoadAt(folder.Path(), kNoon, other).Claims().empty());
    EXPECT_EQ(TLedger::FileOf(folder.Path(), 4), folder / "scale-4.json");
}

TEST(Ledger, KnowsAnArticleByItsDigest) {
    const TScratchFolder folder;
    const TLedger ledger = Saved(folder);
    EXPECT_TRUE(ledger.Holds(7, 0x0123456789abcdef));
    EXPECT_FALSE(ledger.Holds(7, 0x0123456789abcdee));
    EXPECT_FALSE(ledger.Holds(8, 0x0123456789abcdef));
}

TEST(Withdraw, HasTakenTheClaimsOutOfTheFileWhenItReturns) {
    const TScratchFolder folder;
    TLedger ledger = Saved(folder);
    constexpr std::array kOne = {7, 8};
    ledger.Withdraw(kOne, kNoon);
    EXPECT_FALSE(ledger.Claims().contains(7));
    const TLedger loaded = LoadAt(folder.Path(), kNoon);
    EXPECT_FALSE(loaded.Claims().contains(7));
    EXPECT_TRUE(loaded.Claims().contains(12));
}

// Otherwise a run with other choices that is killed leaves the claims of the choices before.
TEST(Withdraw, SavesADropToo) {
    const TScratchFolder folder;
    Saved(folder);
    const TLineChoices wholesale{.price = kWholesalePrice};
    TLedger ledger = LoadAt(folder.Path(), kNoon, TcpScale(), wholesale);
    constexpr std::array kOther = {99};
    ledger.Withdraw(kOther, kNoon);
    EXPECT_TRUE(LoadAt(folder.Path(), kNoon).Claims().empty());
}

TEST(Withdraw, ShowsBeforeAnythingIsSentThatTheLedgerCannotBeSaved) {
    const TScratchFolder folder;
    TLedger ledger = LoadAt(folder / "state", kNoon);
    PutFile(folder / "state", "no folder");
    try {
        ledger.Withdraw(kBoth, kNoon);
        FAIL() << "no error";
    } catch (const TFileError& error) {
        const std::string text = error.what();
        EXPECT_TRUE(text.starts_with("the ledger " + (folder / "state" / "scale-3.json").string() +
                                     " cannot be saved: "))
            << text;
        EXPECT_TRUE(text.ends_with(")")) << text;
    }
}

TEST(Claim, NeedsAScaleThatHasReported) {
    const TScratchFolder folder;
    TLedger ledger = LoadAt(folder.Path(), kNoon);
    EXPECT_THROW(ledger.Claim(1, 1, kNoon), std::logic_error);
}

TEST(SaveIfDue, SavesOnceASecondAndOnlyWhatHasChanged) {
    const TScratchFolder folder;
    TLedger ledger = Saved(folder);
    std::filesystem::remove(FileIn(folder));
    const auto isSaved = [&] { return std::filesystem::exists(FileIn(folder)); };
    ledger.SaveIfDue(kNoon + seconds(5));
    EXPECT_FALSE(isSaved()) << "nothing has changed";
    ledger.Claim(1, 1, kNoon);
    ledger.SaveIfDue(kNoon);
    EXPECT_FALSE(isSaved()) << "in the same second";
    ledger.SaveIfDue(kNoon + seconds(1));
    EXPECT_TRUE(isSaved());
}

TEST(SaveIfDue, IsNotPutOffByAClockThatIsSetBack) {
    const TScratchFolder folder;
    TLedger ledger = Saved(folder);
    std::filesystem::remove(FileIn(folder));
    ledger.Claim(1, 1, kNoon - kWeek);
    ledger.SaveIfDue(kNoon - kWeek);
    EXPECT_TRUE(std::filesystem::exists(FileIn(folder)));
}

TEST(Save, LeavesTheLastGoodFileWhenItFailsAndMayBeTriedAgain) {
    const TScratchFolder folder;
    TLedger ledger = Saved(folder);
    // A folder in its place cannot be replaced by a file.
    std::filesystem::rename(FileIn(folder), folder / "aside");
    std::filesystem::create_directories(FileIn(folder) / "content");
    ledger.Claim(1, 1, kNoon);
    EXPECT_THROW(ledger.Save(kNoon + seconds(1)), TFileError);
    EXPECT_EQ(ledger.Saved(), kNoon);
    EXPECT_EQ(folder.FileCount(), 2U) << "no temporary file stays";
    std::filesystem::remove_all(FileIn(folder));
    ledger.SaveIfDue(kNoon + seconds(1));
    EXPECT_TRUE(LoadAt(folder.Path(), kNoon + seconds(1)).Holds(1, 1));
}

TEST(Save, TakesAwayWhatAKilledSaveHasLeft) {
    const TScratchFolder folder;
    PutFile(folder / "scale-3.json.tolvane-0123456789abcdef.tmp", "half");
    PutFile(folder / "scale-4.json.tolvane-0123456789abcdef.tmp", "of another scale");
    Saved(folder);
    EXPECT_FALSE(exists(folder / "scale-3.json.tolvane-0123456789abcdef.tmp"));
    EXPECT_TRUE(exists(folder / "scale-4.json.tolvane-0123456789abcdef.tmp"));
}

TEST(Load, TellsThatAFileCannotBeRead) {
    const TScratchFolder folder;
    std::filesystem::create_directory(FileIn(folder));
    try {
        LoadAt(folder.Path(), kNoon);
        FAIL() << "no error";
    } catch (const TFileError& error) {
        EXPECT_TRUE(std::string_view(error.what())
                        .starts_with("the ledger " + FileIn(folder).string() + " cannot be read: "))
            << error.what();
    }
}

TEST(Forget, RemovesTheFileOfOneScaleAlsoWhenItIsDamaged) {
    const TScratchFolder folder;
    Saved(folder);
    PutFile(folder / "scale-4.json", "damaged");
    EXPECT_TRUE(TLedger::Forget(folder.Path(), 4));
    EXPECT_FALSE(std::filesystem::exists(folder / "scale-4.json"));
    EXPECT_FALSE(TLedger::Forget(folder.Path(), 4));
    EXPECT_TRUE(TLedger::Forget(folder.Path(), 3));
    EXPECT_TRUE(LoadAt(folder.Path(), kNoon).Claims().empty());
    EXPECT_FALSE(TLedger::Forget(folder / "none", 3));
}

}  // namespace
}  // namespace tolvane::test

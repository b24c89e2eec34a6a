#include "config/ScaleTableMerge.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "config/IniDocument.h"
#include "tests/support/scales/TestScales.h"

namespace tolvane {
namespace {

// A window that has read one version of the file and saves its changes into another.
class ScaleTableMerge : public ::testing::Test {
protected:
    using TChange = std::function<void(TScaleTable&)>;

    // Returns what a window makes of `fileNow` when it has read `opened`, was changed, and saves.
    std::string Saved(const std::string& opened, const TChange& change,
                      const std::string& fileNow) {
        TScaleTable known;
        known.Load(TIniDocument(opened));
        TScaleTable current = known;
        change(current);
        TIniDocument document(fileNow);
        leftOut_ = SaveScaleChanges(known, current, document);
        return document.Bytes();
    }
    static void Nothing(TScaleTable&) {}
    static TChange Unmark(int slot) {
        return [slot](TScaleTable& table) { table[slot].Checked = false; };
    }
    static TChange Put(int slot, const TScaleRec& rec) {
        return [slot, rec](TScaleTable& table) { table[slot] = rec; };
    }
    // As the editor does it: the other scales move up.
    static void DeleteFirst(TScaleTable& table) {
        for (int slot = 1; slot < kScaleSlots; ++slot)
            table[slot] = table[slot + 1];
        table[kScaleSlots].TCPPort = 0;
    }

    std::vector<int> leftOut_;
    const std::string a_ = NetworkScaleSection(1, 1, "A");
    const std::string b_ = NetworkScaleSection(2, 2, "B");
};

TEST_F(ScaleTableMerge, InAnUnchangedFileTheWholeTableIsWritten) {
    // Every save writes missing keys and removes unused sections.
    EXPECT_EQ(Saved("[SCALE1]\r\nScaleName=A\r\nTCPAddress=10.0.0.1\r\nTCPPort=100\r\n"
                    "ScaleType=16\r\nCommType=1\r\n[SCALE3]\r\nScaleName=old\r\n",
                    Nothing,
                    "[SCALE1]\r\nScaleName=A\r\nTCPAddress=10.0.0.1\r\nTCPPort=100\r\n"
                    "ScaleType=16\r\nCommType=1\r\n[SCALE3]\r\nScaleName=old\r\n"),
              "[SCALE1]\r\nScaleName=A\r\nTCPAddress=10.0.0.1\r\nTCPPort=100\r\n"
              "ScaleType=16\r\nCommType=1\r\nScaleNumb=1\r\nChecked=1\r\nBaudRate=0\r\n"
              "Encoding=2\r\nScaleAddr=0\r\n");
}

TEST_F(ScaleTableMerge, AFileThatOthersHaveEmptiedStaysEmpty) {
    EXPECT_EQ(Saved(a_ + b_, Nothing, ""), "");
}

TEST_F(ScaleTableMerge, AScaleThatAnotherWindowHasAddedStays) {
    EXPECT_EQ(Saved(a_, Nothing, a_ + b_), a_ + b_);
    EXPECT_EQ(Saved(a_, Unmark(1), a_ + b_), NetworkScaleSection(1, 1, "A", false) + b_);
}

TEST_F(ScaleTableMerge, AScaleThatAnotherWindowHasRemovedStaysRemoved) {
    EXPECT_EQ(Saved(a_ + b_, Nothing, a_), a_);
    // A changed mark alone does not bring a deleted scale back.
    EXPECT_EQ(Saved(a_ + b_, Unmark(2), a_), a_);
}

TEST_F(ScaleTableMerge, AScaleThatWasRemovedElsewhereAndChangedHereIsNotLost) {
    EXPECT_EQ(Saved(a_ + b_, Put(2, NetworkScale(2, "C")), a_),
              a_ + NetworkScaleSection(2, 2, "C"));
}

TEST_F(ScaleTableMerge, AHandEditOfAnUnchangedScaleStaysToTheByte) {
    const std::string edited =
        "; by hand\r\n[SCALE1]\r\nScaleName = ' A ' ; "
        "new\r\nTCPAddress=10.0.0.1\r\nTCPPort=200\r\n";
    EXPECT_EQ(Saved(a_, Nothing, edited), edited);
}

TEST_F(ScaleTableMerge, AMarkGoesToTheScaleThatWasEditedByHand) {
    const std::string edited =
        "[SCALE1]\r\nScaleNumb=1\r\nScaleName=A\r\nTCPAddress=10.0.0.9\r\n"
        "TCPPort=200\r\nChecked=1\r\nNote=mine\r\n";
    EXPECT_EQ(Saved(a_, Unmark(1), edited),
              "[SCALE1]\r\nScaleNumb=1\r\nScaleName=A\r\nTCPAddress=10.0.0.9\r\nTCPPort=200\r\n"
              "Checked=0\r\nNote=mine\r\nBaudRate=0\r\nScaleType=0\r\nEncoding=2\r\n"
              "ScaleAddr=0\r\nCommType=0\r\n");
}

TEST_F(ScaleTableMerge, TheLastWindowsValuesCountWhereBothHaveChangedAScale) {
    EXPECT_EQ(Saved(a_, Put(1, NetworkScale(1, "here")), NetworkScaleSection(1, 1, "there")),
              NetworkScaleSection(1, 1, "here"));
}

TEST_F(ScaleTableMerge, AMarkOfTheOthersStaysWithAScaleThatIsRenamedHere) {
    EXPECT_EQ(Saved(a_, Put(1, NetworkScale(1, "here")), NetworkScaleSection(1, 1, "A", false)),
              NetworkScaleSection(1, 1, "here", false));
}

TEST_F(ScaleTableMerge, ScalesThatBothHaveAddedInOneSlotAreBothKept) {
    EXPECT_EQ(Saved(a_, Put(2, NetworkScale(3, "C")), a_ + b_),
              a_ + b_ + NetworkScaleSection(3, 3, "C"));
}

TEST_F(ScaleTableMerge, TheSameScaleAddedInBothIsOne) {
    EXPECT_EQ(Saved(a_, Put(2, NetworkScale(2, "B")), a_ + b_), a_ + b_);
}

TEST_F(ScaleTableMerge, AScaleDeletedHereIsDeletedWhereverItStandsNow) {
    EXPECT_EQ(Saved(a_ + b_, DeleteFirst, a_ + b_ + NetworkScaleSection(3, 3, "C")),
              b_ + NetworkScaleSection(3, 3, "C"));
    const std::string moved = NetworkScaleSection(1, 2, "B") + NetworkScaleSection(2, 1, "A");
    EXPECT_EQ(Saved(a_ + b_, DeleteFirst, moved), NetworkScaleSection(1, 2, "B"));
}

TEST_F(ScaleTableMerge, AScaleDeletedHereAndChangedElsewhereStays) {
    EXPECT_EQ(Saved(a_ + b_, DeleteFirst, NetworkScaleSection(1, 1, "new") + b_),
              NetworkScaleSection(1, 1, "new") + b_);
}

TEST_F(ScaleTableMerge, AMarkFollowsAScaleThatAnotherWindowHasMoved) {
    // The other window has deleted A: B stands in the first slot.
    EXPECT_EQ(Saved(a_ + b_, Unmark(2), NetworkScaleSection(1, 2, "B")),
              NetworkScaleSection(1, 2, "B", false));
}

TEST_F(ScaleTableMerge, ScalesThatMovedHereAndDidNotChangeStayAsTheOthersLeftThem) {
    // Deleting A here moves B up; in the file it has another name by now.
    const std::string renamed = a_ + NetworkScaleSection(2, 2, "renamed");
    EXPECT_EQ(Saved(a_ + b_, DeleteFirst, renamed), NetworkScaleSection(2, 2, "renamed"));
}

// The editor moves the later scales up: the second slot then holds the third scale, changed.
TEST_F(ScaleTableMerge, DeletingOneScaleAndChangingTheNextInOneGoIsNoChangeOfTheFirst) {
    const std::string opened = a_ + b_ + NetworkScaleSection(3, 3, "C");
    const TChange deleteAndRename = [](TScaleTable& table) {
        table[2] = NetworkScale(3, "C here");
        table[3].TCPPort = 0;
    };
    EXPECT_EQ(Saved(opened, deleteAndRename,
                    a_ + NetworkScaleSection(2, 2, "B there") + NetworkScaleSection(3, 3, "C")),
              a_ + NetworkScaleSection(2, 2, "B there") + NetworkScaleSection(3, 3, "C here"));
    EXPECT_EQ(Saved(opened, deleteAndRename, a_ + b_ + NetworkScaleSection(3, 3, "C there")),
              a_ + NetworkScaleSection(3, 3, "C here"));
}

TEST_F(ScaleTableMerge, AChangedScaleKeepsItsOwnMark) {
    const TChange deleteAndChange = [](TScaleTable& table) {
        table[2] = NetworkScale(3, "C here");
        table[2].Checked = false;
        table[3].TCPPort = 0;
    };
    EXPECT_EQ(Saved(a_ + NetworkScaleSection(2, 2, "B", false) + NetworkScaleSection(3, 3, "C"),
                    deleteAndChange, a_ + b_ + NetworkScaleSection(3, 3, "C")),
              a_ + NetworkScaleSection(3, 3, "C here", false));
}

TEST_F(ScaleTableMerge, AScaleAddedInTheSlotOfADeletedOneHasNothingOfIt) {
    EXPECT_EQ(
        Saved(a_ + b_, Put(2, NetworkScale(9, "N")), a_ + NetworkScaleSection(2, 2, "B", false)),
        a_ + NetworkScaleSection(2, 9, "N"));
    EXPECT_EQ(
        Saved(a_ + b_, Put(2, NetworkScale(9, "N")), a_ + NetworkScaleSection(2, 2, "B there")),
        a_ + NetworkScaleSection(2, 2, "B there") + NetworkScaleSection(3, 9, "N"));
}

TEST_F(ScaleTableMerge, AScaleWithANewNumberIsTheSameByItsName) {
    EXPECT_EQ(Saved(a_, Put(1, NetworkScale(7, "A")), a_ + b_),
              NetworkScaleSection(1, 7, "A") + b_);
}

TEST_F(ScaleTableMerge, AMarkFollowsAScaleThatTheOthersHaveMovedAndRenamed) {
    EXPECT_EQ(Saved(a_ + b_, Unmark(2), NetworkScaleSection(1, 2, "B there")),
              NetworkScaleSection(1, 2, "B there", false));
}

TEST_F(ScaleTableMerge, AMarkGoesToNoScaleThatCannotBeToldFromAnother) {
    const std::string opened = a_ + NetworkScaleSection(2, 5, "mine");
    const std::string now =
        a_ + NetworkScaleSection(2, 5, "theirs") + NetworkScaleSection(3, 5, "mine, renamed");
    EXPECT_EQ(Saved(opened, Unmark(2), now), now);
}

TEST_F(ScaleTableMerge, AnAddedScaleWithoutRoomIsNamedAndNothingIsLost) {
    std::string opened;
    for (int slot = 1; slot < kScaleSlots; ++slot)
        opened += NetworkScaleSection(slot, slot, "S" + std::to_string(slot));
    const std::string full = opened + NetworkScaleSection(20, 20, "theirs");
    EXPECT_EQ(Saved(opened, Put(20, NetworkScale(21, "mine")), full), full);
    EXPECT_EQ(leftOut_, std::vector<int>{20});
}

TEST_F(ScaleTableMerge, EqualScalesAreToldApartByTheirSlots) {
    const std::string twins = a_ + NetworkScaleSection(2, 1, "A");
    EXPECT_EQ(Saved(twins, Unmark(2), twins + NetworkScaleSection(3, 3, "C")),
              a_ + NetworkScaleSection(2, 1, "A", false) + NetworkScaleSection(3, 3, "C"));
}

TEST_F(ScaleTableMerge, AnUnknownConnectionTypeIsNoChange) {
    const std::string odd = "[SCALE1]\r\nScaleName=A\r\nTCPAddress=10.0.0.1\r\nCommType=7\r\n";
    EXPECT_EQ(Saved(odd, Nothing, odd + b_), odd + b_);
}

TEST_F(ScaleTableMerge, ForeignSectionsStay) {
    EXPECT_EQ(Saved(a_, Unmark(1), "[OTHER]\r\nk=v\r\n" + b_ + a_),
              "[OTHER]\r\nk=v\r\n" + b_ + NetworkScaleSection(1, 1, "A", false));
}

}  // namespace
}  // namespace tolvane

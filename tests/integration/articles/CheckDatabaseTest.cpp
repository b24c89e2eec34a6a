#include <gtest/gtest.h>

#include "database/DatabaseError.h"
#include "tests/integration/articles/LoadFixture.h"

namespace tolvane::test {
namespace {

using TEvents = std::vector<std::string>;

class CheckDatabaseTest : public LoadTest {
protected:
    std::string Indexes(const std::string& table) {
        return database_->Host().Ask(
            "select count(*) from RDB$INDICES where RDB$INDEX_NAME = 'SUPPLIES_PLUCONTROL_PLUIDX' "
            "and RDB$RELATION_NAME = '" +
            table + "'");
    }

    // Runs the check. Its error box may come only after everything has been released.
    std::string ErrorOfCheck() {
        view_.events.clear();
        view_.onEvent = [&](const std::string&) {
            EXPECT_FALSE(transaction_->IsActive());
            EXPECT_FALSE(query_->IsOpen());
        };
        Loader().CheckDatabase();
        EXPECT_FALSE(transaction_->IsActive());
        EXPECT_FALSE(query_->IsOpen());
        view_.onEvent = nullptr;
        EXPECT_LE(view_.events.size(), 1U);
        return view_.events.empty() ? "" : view_.events.front();
    }
};

TEST_F(CheckDatabaseTest, TheMissingIndexIsCreatedOnTheArticleNumber) {
    EXPECT_EQ(ErrorOfCheck(), "");
    EXPECT_EQ(Indexes("SUPPLIES_PLUCONTROL"), "1");
    EXPECT_EQ(database_->Host().Ask("select trim(RDB$FIELD_NAME) from RDB$INDEX_SEGMENTS where "
                                    "RDB$INDEX_NAME = 'SUPPLIES_PLUCONTROL_PLUIDX'"),
              "SPCTRL_PLUNUMB");
}

TEST_F(CheckDatabaseTest, WithTheIndexPresentNothingIsCreated) {
    Run("create index SUPPLIES_PLUCONTROL_PLUIDX on SUPPLIES_PLUCONTROL (SPCTRL_SHIPMENTNUMB)");
    EXPECT_EQ(ErrorOfCheck(), "");
    EXPECT_EQ(Indexes("SUPPLIES_PLUCONTROL"), "1");
    EXPECT_EQ(database_->Host().Ask("select trim(RDB$FIELD_NAME) from RDB$INDEX_SEGMENTS where "
                                    "RDB$INDEX_NAME = 'SUPPLIES_PLUCONTROL_PLUIDX'"),
              "SPCTRL_SHIPMENTNUMB");
}

TEST_F(CheckDatabaseTest, RunningTheCheckTwiceInARowCreatesTheIndexAtMostOnce) {
    EXPECT_EQ(ErrorOfCheck(), "");
    EXPECT_EQ(ErrorOfCheck(), "");
    EXPECT_EQ(Indexes("SUPPLIES_PLUCONTROL"), "1");
}

TEST_F(CheckDatabaseTest, AnIndexOfThatNameOnAnotherTableIsReportedAndTheLoadGoesOn) {
    AddArticle(1);
    Run("create index SUPPLIES_PLUCONTROL_PLUIDX on BARCODES (PLU_BARCODE)");
    const std::string error = ErrorOfCheck();
    EXPECT_TRUE(error.starts_with("error [FCheckDB failed]: ")) << error;
    EXPECT_NE(error.find("SUPPLIES_PLUCONTROL_PLUIDX"), std::string::npos) << error;
    EXPECT_NE(error.find("already exists"), std::string::npos) << error;
    EXPECT_EQ(LoadEvents(), (TEvents{"suspend", "show 0", "step", "show -1", "resume", "hide"}));
}

TEST_F(CheckDatabaseTest, AMissingTableIsReported) {
    Run("drop table SUPPLIES_PLUCONTROL");
    const std::string error = ErrorOfCheck();
    EXPECT_TRUE(error.starts_with("error [FCheckDB failed]: ")) << error;
    EXPECT_NE(error.find("SUPPLIES_PLUCONTROL"), std::string::npos) << error;
}

TEST_F(CheckDatabaseTest, ALostConnectionIsReported) {
    const std::string id = database_->Host().Ask("select current_connection from RDB$DATABASE");
    database_->Attach()->Run("delete from MON$ATTACHMENTS where MON$ATTACHMENT_ID = " + id);
    const std::string error = ErrorOfCheck();
    EXPECT_TRUE(error.starts_with("error [FCheckDB failed]: connection shutdown")) << error;
}

TEST_F(CheckDatabaseTest, ATableThatAnotherUserIsWritingToIsReportedAtOnce) {
    auto other = database_->Attach();
    TTransaction writing(Library(), other->Handle());
    TQuery insert(writing);
    writing.Start();
    insert.SetText("insert into SUPPLIES_PLUCONTROL values (1, 1, 'L')");
    insert.Execute();
    const std::string error = ErrorOfCheck();
    EXPECT_TRUE(error.starts_with("error [FCheckDB failed]: ")) << error;
    EXPECT_EQ(Indexes("SUPPLIES_PLUCONTROL"), "0");
    insert.Close();
    writing.Rollback();
    EXPECT_EQ(ErrorOfCheck(), "");
    EXPECT_EQ(Indexes("SUPPLIES_PLUCONTROL"), "1");
}

TEST_F(CheckDatabaseTest, AUserWithoutTheRightGetsAnError) {
    Run("create or alter user TOLVANE_CLERK password 'clerk' using plugin Srp");
    TLogin clerk;
    clerk.user = "TOLVANE_CLERK";
    clerk.password = "clerk";
    database_->Reconnect(clerk);
    Connect();
    const std::string error = ErrorOfCheck();
    EXPECT_TRUE(error.starts_with("error [FCheckDB failed]: ")) << error;
    EXPECT_NE(error.find("permission"), std::string::npos) << error;
    database_->Reconnect({});
    Connect();
    EXPECT_EQ(Indexes("SUPPLIES_PLUCONTROL"), "0");
    Run("drop user TOLVANE_CLERK using plugin Srp");
}

// A user who may not create an index gets no error, because only the count is run.
TEST_F(CheckDatabaseTest, WithTheIndexPresentOnlyTheCountQueryRuns) {
    Run("create index SUPPLIES_PLUCONTROL_PLUIDX on SUPPLIES_PLUCONTROL (SPCTRL_PLUNUMB)");
    Run("create or alter user TOLVANE_CLERK password 'clerk' using plugin Srp");
    TLogin clerk;
    clerk.user = "TOLVANE_CLERK";
    clerk.password = "clerk";
    database_->Reconnect(clerk);
    Connect();
    EXPECT_EQ(ErrorOfCheck(), "");
    database_->Reconnect({});
    Connect();
    Run("drop user TOLVANE_CLERK using plugin Srp");
}

TEST_F(CheckDatabaseTest, AnActiveTransactionIsCommittedAndAnOpenQueryClosedFirst) {
    transaction_->Start();
    query_->SetText("insert into SUPPLIES_PLUCONTROL values (1, 1, 'L')");
    query_->Execute();
    query_->SetText("select * from N_CURRENCY");
    query_->Open();
    EXPECT_EQ(ErrorOfCheck(), "");
    EXPECT_EQ(database_->Host().Ask("select count(*) from SUPPLIES_PLUCONTROL"), "1");
    EXPECT_EQ(Indexes("SUPPLIES_PLUCONTROL"), "1");
}

}  // namespace
}  // namespace tolvane::test

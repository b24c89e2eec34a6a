#include "database/Transaction.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

#include "database/DatabaseError.h"
#include "database/Query.h"
#include "tests/support/database/TestDatabase.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

class TransactionTest : public testing::Test {
protected:
    TransactionTest() : database_("create table T (N integer);\n") {}

    TTransaction Make() { return TTransaction(Library(), database_.Host().Handle()); }
    void Insert(TTransaction& transaction) {
        TQuery query(transaction);
        query.SetText("insert into T values (1)");
        query.Execute();
    }
    std::string Rows() { return database_.Attach()->Ask("select count(*) from T"); }
    // The host's connection counts its own transactions, the one that asks included.
    std::string Active() {
        return database_.Host().Ask(
            "select count(*) - 1 from MON$TRANSACTIONS where MON$ATTACHMENT_ID = "
            "current_connection");
    }

    TTestDatabase database_;
};

TEST_F(TransactionTest, CommitKeepsAndRollbackForgets) {
    TTransaction transaction = Make();
    EXPECT_FALSE(transaction.IsActive());
    transaction.Start();
    EXPECT_TRUE(transaction.IsActive());
    Insert(transaction);
    transaction.Rollback();
    EXPECT_FALSE(transaction.IsActive());
    EXPECT_EQ(Rows(), "0");
    transaction.Start();
    Insert(transaction);
    transaction.Commit();
    EXPECT_FALSE(transaction.IsActive());
    EXPECT_EQ(Rows(), "1");
}

TEST_F(TransactionTest, TheDestructorRollsBack) {
    {
        TTransaction transaction = Make();
        transaction.Start();
        Insert(transaction);
        EXPECT_EQ(Active(), "1");
    }
    EXPECT_EQ(Active(), "0");
    EXPECT_EQ(Rows(), "0");
}

TEST_F(TransactionTest, MoveAssignmentRollsBackTheTargetAndTakesTheSource) {
    TTransaction target = Make();
    target.Start();
    Insert(target);
    TTransaction source = Make();
    source.Start();
    Insert(source);
    EXPECT_EQ(Active(), "2");
    target = std::move(source);
    EXPECT_EQ(Active(), "1");
    target.Commit();
    EXPECT_EQ(Rows(), "1");
}

TEST_F(TransactionTest, AMovedTransactionStaysActiveAndItsQueriesGood) {
    TTransaction first = Make();
    first.Start();
    TQuery query(first);
    TTransaction second = std::move(first);
    query.SetText("insert into T values (1)");
    query.Execute();
    second.Commit();
    EXPECT_EQ(Rows(), "1");
}

TEST_F(TransactionTest, StartTwiceAndEndWithoutStartAreErrors) {
    TTransaction transaction = Make();
    EXPECT_THROW(transaction.Commit(), TDatabaseError);
    EXPECT_THROW(transaction.Rollback(), TDatabaseError);
    transaction.Start();
    EXPECT_THROW(transaction.Start(), TDatabaseError);
    EXPECT_EQ(Active(), "1");
}

TEST_F(TransactionTest, WithoutAHandleCellStartIsAnError) {
    TTransaction transaction(Library(), nullptr);
    EXPECT_THROW(transaction.Start(), TDatabaseError);
    EXPECT_FALSE(transaction.IsActive());
}

TEST_F(TransactionTest, AFailedCommitLeavesItActive) {
    // A unique index over repeated values fails when it is committed, if not before.
    database_.Host().Run("insert into T values (1)");
    database_.Host().Run("insert into T values (1)");
    TTransaction transaction = Make();
    transaction.Start();
    bool failed = false;
    try {
        TQuery query(transaction);
        query.SetText("create unique index T_N on T (N)");
        query.Execute();
        transaction.Commit();
    } catch (const TDatabaseError& error) {
        failed = true;
        EXPECT_EQ(error.SqlCode(), -803) << error.what();
    }
    EXPECT_TRUE(failed);
    EXPECT_TRUE(transaction.IsActive());
    transaction.Rollback();
    EXPECT_FALSE(transaction.IsActive());
}

TEST_F(TransactionTest, ALockOfAnotherIsAnErrorAtOnce) {
    database_.Host().Run("insert into T values (1)");
    auto other = database_.Attach();
    TTransaction holding(Library(), other->Handle());
    holding.Start();
    TQuery update(holding);
    update.SetText("update T set N = 2");
    update.Execute();

    TTransaction transaction = Make();
    transaction.Start();
    TQuery query(transaction);
    query.SetText("update T set N = 3");
    EXPECT_THROW(query.Execute(), TDatabaseError);
    holding.Rollback();
}

TEST_F(TransactionTest, AReadOnlyOneRefusesToWrite) {
    TTransaction transaction(Library(), database_.Host().Handle(), TTransactionKind::ReadOnly);
    transaction.Start();
    try {
        Insert(transaction);
        ADD_FAILURE() << "written";
    } catch (const TDatabaseError& error) {
        EXPECT_STREQ(error.what(), "attempted update during read-only transaction");
    }
    transaction.Commit();
    EXPECT_EQ(Rows(), "0");
}

TEST_F(TransactionTest, AReadOnlyOneSeesOneMomentAndLocksNothing) {
    TTransaction transaction(Library(), database_.Host().Handle(), TTransactionKind::ReadOnly);
    transaction.Start();
    TQuery query(transaction);
    query.SetText("select count(*) from T");
    query.Open();
    database_.Attach()->Run("insert into T values (1)");
    query.Open();
    EXPECT_EQ(query.AsText(0, 0, {}), "0");
    query.Close();
    transaction.Commit();
    EXPECT_EQ(Rows(), "1");
}

TEST_F(TransactionTest, WithoutItsConnectionNothingIsThrownByTheDestructor) {
    TTransaction transaction = Make();
    transaction.Start();
    const std::string id = database_.Host().Ask("select current_connection from RDB$DATABASE");
    database_.Attach()->Run("delete from MON$ATTACHMENTS where MON$ATTACHMENT_ID = " + id);
    TQuery query(transaction);
    query.SetText("insert into T values (1)");
    EXPECT_THROW(query.Execute(), TDatabaseError);
}

}  // namespace
}  // namespace tolvane::test

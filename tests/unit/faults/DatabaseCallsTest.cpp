// What another thread sees of a call to the client library. The library's own calls stand for that
// thread here.

#include "database/DatabaseCalls.h"

#include <gtest/gtest.h>
#include <ibase.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "database/DatabaseError.h"
#include "database/Transaction.h"
#include "tests/support/client/FakeClient.h"

namespace tolvane::test {
namespace {

class DatabaseCalls : public ::testing::Test {
protected:
    DatabaseCalls() {
        client_.context = this;
        client_.during = [](void* self) { static_cast<DatabaseCalls*>(self)->during_(); };
    }

    TFakeClient& client_ = NewFakeClient();
    unsigned cell_ = 1;
    TClientLibrary library_{FakeClientName()};
    TTransaction transaction_{library_, &cell_};
    TDatabaseCalls calls_{library_, &cell_};
    std::function<void()> during_ = [] {};
};

TEST_F(DatabaseCalls, AreSeenWhileTheyAreUnderWay) {
    std::vector<std::uint64_t> seen;
    during_ = [&] { seen.push_back(calls_.Current()); };
    EXPECT_EQ(calls_.Current(), 0U);
    transaction_.Start();
    EXPECT_EQ(calls_.Current(), 0U);
    transaction_.Commit();
    EXPECT_EQ(calls_.Current(), 0U);
    EXPECT_EQ(seen, (std::vector<std::uint64_t>{1, 2}));
}

TEST_F(DatabaseCalls, AreOverWhenTheyHaveFailed) {
    client_.failingCall = 1;
    EXPECT_THROW(transaction_.Start(), TDatabaseError);
    EXPECT_EQ(calls_.Current(), 0U);
}

TEST_F(DatabaseCalls, AreEndedByBreakingTheConnection) {
    ASSERT_TRUE(calls_.CanEnd());
    during_ = [&] { calls_.End(1); };
    transaction_.Start();
    EXPECT_EQ(client_.cancels, 1);
    EXPECT_EQ(client_.cancelled, &cell_);
    EXPECT_EQ(client_.cancelKind, fb_cancel_abort);
}

TEST_F(DatabaseCalls, AreLeftAloneWhenTheOneThatWasMeantHasComeBack) {
    transaction_.Start();
    during_ = [&] { calls_.End(1); };
    transaction_.Commit();
    calls_.End(1);
    calls_.End(2);
    calls_.End(0);
    EXPECT_EQ(client_.cancels, 0);
}

}  // namespace
}  // namespace tolvane::test

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "database/DatabaseError.h"
#include "database/Query.h"
#include "tests/support/database/TestDatabase.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

constexpr std::string_view kTables = R"(
create table T (N integer not null);
create exception WARNING 'Складът е заключен за ревизия';
create procedure P as begin exception WARNING; end;
create table "Склад" (N integer);
)";

class DatabaseErrorsTest : public testing::Test {
protected:
    DatabaseErrorsTest() : database_(kTables) {}

    TDatabaseError ErrorOf(const std::function<void()>& body) {
        try {
            body();
        } catch (const TDatabaseError& error) {
            return error;
        }
        return TDatabaseError("no error");
    }
    TDatabaseError ErrorOf(std::string_view statement) {
        return ErrorOf([&] { database_.Host().Run(statement); });
    }

    TTestDatabase database_;
};

TEST_F(DatabaseErrorsTest, TheMessageIsTheServersOwnLines) {
    const TDatabaseError error = ErrorOf("insert into NOWHERE values (1)");
    EXPECT_STREQ(error.what(),
                 "Dynamic SQL Error\nSQL error code = -204\nTable unknown\nNOWHERE\nAt line 1, "
                 "column 13");
    EXPECT_EQ(error.SqlCode(), -204);
}

TEST_F(DatabaseErrorsTest, TheWholeStatusVectorIsKept) {
    const TDatabaseError error = ErrorOf("insert into NOWHERE values (1)");
    // isc_dsql_error, isc_sqlerr with -204, isc_dsql_relation_err, isc_random with the name, ...
    EXPECT_EQ(error.ErrorCode(), 335544569);
    ASSERT_GE(error.Status().size(), 6U);
    EXPECT_EQ(error.Status()[1].number, 335544436);
    EXPECT_EQ(error.Status()[2].number, -204);
    EXPECT_EQ(error.Status()[3].number, 335544580);
    EXPECT_TRUE(std::any_of(error.Status().begin(), error.Status().end(),
                            [](const auto& argument) { return argument.text == "NOWHERE"; }));
}

TEST_F(DatabaseErrorsTest, TheTextOfAnExceptionComesInCodePage1251) {
    const TDatabaseError error = ErrorOf("execute procedure P");
    EXPECT_NE(ToUtf8(error.what()).find("Складът е заключен за ревизия"), std::string::npos)
        << ToUtf8(error.what());
}

TEST_F(DatabaseErrorsTest, CyrillicNamesInMessagesComeInCodePage1251) {
    const TDatabaseError error = ErrorOf("insert into \"Магазин\" values (1)");
    EXPECT_NE(ToUtf8(error.what()).find("Магазин"), std::string::npos) << ToUtf8(error.what());
}

TEST_F(DatabaseErrorsTest, AWrongPasswordIsReportedInTheServersWords) {
    TLogin login;
    login.password = "wrong";
    const TDatabaseError error = ErrorOf([&] { database_.Attach(login); });
    EXPECT_STREQ(error.what(),
                 "Your user name and password are not defined. Ask your database administrator to "
                 "set up a Firebird login.");
    EXPECT_EQ(error.SqlCode(), -902);
    EXPECT_EQ(error.ErrorCode(), 335544472);
}

TEST_F(DatabaseErrorsTest, AServerThatIsNotThereIsReportedInTheClientsWords) {
    TLogin login;
    login.address = "127.0.0.1/1";
    const TDatabaseError error = ErrorOf([&] { database_.Attach(login); });
    EXPECT_NE(std::string(error.what()).find("127.0.0.1"), std::string::npos) << error.what();
    EXPECT_EQ(error.ErrorCode(), 335544721);
}

TEST_F(DatabaseErrorsTest, ANullInAColumnThatMustHaveAValueIsReported) {
    const TDatabaseError error = ErrorOf("insert into T values (null)");
    EXPECT_EQ(error.SqlCode(), -625);
    EXPECT_NE(std::string(error.what()).find("*** null ***"), std::string::npos) << error.what();
}

}  // namespace
}  // namespace tolvane::test

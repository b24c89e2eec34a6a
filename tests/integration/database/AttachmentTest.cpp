#include "database/Attachment.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/integration/database/Shop.h"

namespace tolvane::test {
namespace {

std::string Connections(TAttachment& asking) {
    return Ask(asking,
               "select count(*) from MON$ATTACHMENTS where MON$USER = 'SYSDBA' and MON$SYSTEM_FLAG "
               "= 0");
}

TEST(Attachment, ReadsInCodePage1251AndDialect3) {
    TAttachment attachment(ShopLogin());
    EXPECT_EQ(Ask(attachment, "select trim(CURR_NAME) from N_CURRENCY where CURR_ID = 2"),
              "Български лев");
    EXPECT_EQ(Ask(attachment,
                  "select trim(C.RDB$CHARACTER_SET_NAME) from MON$ATTACHMENTS A join "
                  "RDB$CHARACTER_SETS C on A.MON$CHARACTER_SET_ID = "
                  "C.RDB$CHARACTER_SET_ID where MON$ATTACHMENT_ID = "
                  "current_connection"),
              "WIN1251");
    EXPECT_EQ(Ask(attachment, "select \"CURR_ABR\" from N_CURRENCY where CURR_ID = 1"), "EUR");
}

TEST(Attachment, DetachesAtItsEnd) {
    TAttachment asking(ShopLogin());
    const std::string alone = Connections(asking);
    {
        const TAttachment other(ShopLogin());
        EXPECT_NE(Connections(asking), alone);
    }
    EXPECT_EQ(Connections(asking), alone);
}

TEST(Attachment, AMovedOneIsTheSameConnectionAndTheTargetsIsDetached) {
    TAttachment first(ShopLogin());
    void* const handle = first.Handle();
    const std::string id = Ask(first, "select current_connection from RDB$DATABASE");
    TAttachment second = std::move(first);
    EXPECT_EQ(second.Handle(), handle);
    TAttachment third(ShopLogin());
    const std::string before = Connections(third);
    third = std::move(second);
    EXPECT_EQ(Ask(third, "select current_connection from RDB$DATABASE"), id);
    EXPECT_NE(Connections(third), before);
}

TEST(Attachment, AWrongPasswordIsToldInTheServersWordsWithoutThePassword) {
    TDatabaseLogin login = ShopLogin();
    login.password = "secret-of-the-shop";
    const std::string error = ErrorOf(login);
    EXPECT_EQ(error,
              "The database \"" + login.database +
                  "\" cannot be opened as user \"SYSDBA\":\nYour user name and password are not "
                  "defined. Ask your database administrator to set up a Firebird login.");
    EXPECT_EQ(error.find(login.password), std::string::npos);
}

TEST(Attachment, AServersStatusComesWithTheError) {
    TDatabaseLogin login = ShopLogin();
    login.password = "wrong";
    try {
        const TAttachment attachment(login);
        FAIL() << "attached";
    } catch (const TDatabaseError& error) {
        EXPECT_EQ(error.ErrorCode(), 335544472);
        EXPECT_EQ(error.SqlCode(), -902);
    }
}

TEST(Attachment, ADatabaseThatIsNotThereIsNamedInTheServersWords) {
    TDatabaseLogin login = ShopLogin();
    login.database += ".none";
    const std::string error = ErrorOf(login);
    EXPECT_TRUE(error.starts_with("The database \"" + login.database + "\" cannot be opened"))
        << error;
    EXPECT_NE(error.find("I/O error during \"open\" operation for file"), std::string::npos)
        << error;
}

TEST(Attachment, AServerThatIsNotThereIsNamedInTheClientsWords) {
    TDatabaseLogin login = ShopLogin();
    login.database = "127.0.0.1/1:/shop.fdb";
    const std::string error = ErrorOf(login);
    EXPECT_TRUE(
        error.starts_with("The database \"127.0.0.1/1:/shop.fdb\" cannot be opened as user "
                          "\"SYSDBA\":\nUnable to complete network request to host "
                          "\"127.0.0.1\"."))
        << error;
}

TEST(Attachment, APasswordThatIsTooLongIsRefusedAndNotShown) {
    TDatabaseLogin login = ShopLogin();
    login.password.assign(256, 'x');
    const std::string error = ErrorOf(login);
    EXPECT_NE(error.find("longer than 255 bytes"), std::string::npos) << error;
    EXPECT_EQ(error.find("xxx"), std::string::npos) << error;
}

}  // namespace
}  // namespace tolvane::test

#include <gtest/gtest.h>

#include "articles/ArticleReading.h"
#include "tests/integration/database/PlainFile.h"

// The client library's own arithmetic for passwords, and its converters of texts, keep memory.
extern "C" const char* __lsan_default_suppressions();   // NOLINT: the sanitizer's name
extern "C" const char* __lsan_default_suppressions() {  // NOLINT
    return "leak:libtommath\nleak:iconv_open\n";
}

namespace tolvane::test {
namespace {

// The engine inside this process, on a plain file.
class EmbeddedTest : public testing::Test {
protected:
    EmbeddedTest() { CopyShop(file_); }

    TScratchFolder folder_;
    const std::filesystem::path file_ = folder_ / "магазин ü.fdb";
};

TEST_F(EmbeddedTest, ReadsThePlainFileWithoutServerUserOrPassword) {
    TAttachment attachment({.database = file_.string()});
    EXPECT_EQ(Ask(attachment, "select trim(current_user) from RDB$DATABASE"), "SYSDBA");
    EXPECT_EQ(Ask(attachment,
                  "select coalesce(MON$REMOTE_PROTOCOL, 'none') from MON$ATTACHMENTS "
                  "where MON$ATTACHMENT_ID = current_connection"),
              "none");
    const TArticleReading reading =
        ReadArticles(attachment.Library(), attachment.Handle(), SystemLocalClock(), {});
    EXPECT_EQ(reading.articles.RowCount(), 305U);
}

TEST_F(EmbeddedTest, AUserThatIsGivenIsTheUser) {
    TAttachment attachment({.database = file_.string(), .user = "CASHIER"});
    EXPECT_EQ(Ask(attachment, "select trim(current_user) from RDB$DATABASE"), "CASHIER");
}

TEST_F(EmbeddedTest, AFileThatIsNotThereIsToldInTheEnginesWords) {
    const std::string name = (folder_ / "няма.fdb").string();
    EXPECT_EQ(ErrorOf({.database = name}),
              "The database \"" + name +
                  "\" cannot be opened as user \"SYSDBA\":\nI/O error during \"open\" operation "
                  "for file \"" +
                  name + "\"\nError while trying to open file\nNo such file or directory");
}

TEST_F(EmbeddedTest, AFileThatIsNoDatabaseIsToldInTheEnginesWords) {
    const std::filesystem::path file = folder_ / "shop.txt";
    PutFile(file, std::string(10000, 'x'));
    const std::string error = ErrorOf({.database = file.string()});
    EXPECT_TRUE(error.ends_with("shop.txt is not a valid database")) << error;
}

TEST_F(EmbeddedTest, AFileThatAServerHasOpenIsRefusedWithTheCure) {
    TDatabaseLogin server = ShopLogin();
    const std::filesystem::path file = folder_ / "served.fdb";
    CopyShop(file);
    server.database = Variable("TOLVANE_FB_SERVER") + ":" + file.string();
    {
        const TAttachment attachment(server);
        const std::string error = ErrorOf({.database = file.string()});
        EXPECT_TRUE(error.ends_with(kInUse)) << error;
    }
    EXPECT_EQ(ErrorOf({.database = file.string()}), "");
}

}  // namespace
}  // namespace tolvane::test

// A connection of the command's own to a server that is killed, or that a network hides. The server
// is the test's own.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <sstream>

#include "command/Shop.h"
#include "tests/integration/database/PlainFile.h"
#include "tests/support/database/CuttingProxy.h"
#include "tests/support/database/OwnServer.h"

// The client library's own arithmetic for passwords, and its converters of texts, keep memory.
extern "C" const char* __lsan_default_suppressions();   // NOLINT: the sanitizer's name
extern "C" const char* __lsan_default_suppressions() {  // NOLINT
    return "leak:libtommath\nleak:iconv_open\n";
}

namespace tolvane::test {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::seconds kLongestEnd{10};

TOwnServer& OwnServer() {
    static TOwnServer server;
    return server;
}

class OwnConnectionTest : public testing::Test {
protected:
    OwnConnectionTest() {
        CopyShop(File());
        OwnServer().Start();
    }
    std::filesystem::path File() const { return folder_ / "shop.fdb"; }
    TDatabaseLogin LoginAt(const std::string& address) const {
        TDatabaseLogin login = ShopLogin();
        login.database = address + ":" + File().string();
        return login;
    }

    TScratchFolder folder_;
};

// The last one or two pieces are the detachment, which has nobody to tell.
TEST_F(OwnConnectionTest, AServerThatIsKilledBeforeAnyPieceOfAnAttachmentIsTold) {
    int piece = 0;
    int told = 0;
    do {
        OwnServer().Start();
        TCuttingProxy proxy(OwnServer().Address());
        proxy.BeforePiece(++piece, [] { OwnServer().Kill(); });
        const auto begin = steady_clock::now();
        const std::string error = ErrorOf(LoginAt(proxy.Address()));
        EXPECT_LT(steady_clock::now() - begin, kLongestEnd) << piece;
        if (!error.empty()) ++told;
        EXPECT_TRUE(error.empty() || !OwnServer().IsRunning()) << error;
    } while (!OwnServer().IsRunning() && !HasFailure());
    RecordProperty("pieces", piece - 1);
    EXPECT_GE(told, 3);
    EXPECT_LE(piece - 1 - told, 2) << "only the detachment is not told";
    OwnServer().Start();
    EXPECT_EQ(ErrorOf(LoginAt(OwnServer().Address())), "");
}

class SilentShopTest : public OwnConnectionTest {
protected:
    // Reads the shop as the command does; what it leaves the process with, if it does. The process
    // of a test cannot end there, so the connection does.
    std::optional<TExitCode> ReadThrough(TCuttingProxy& proxy, std::chrono::milliseconds longest) {
        PutFile(folder_ / "password", ShopLogin().password);
        const TCommandOptions options{.database = LoginAt(proxy.Address()).database,
                                      .user = ShopLogin().user,
                                      .passwordFile = folder_ / "password"};
        std::optional<TExitCode> left;
        TWorld world{.out = out_,
                     .err = err_,
                     .terminal = false,
                     .clock = SystemClock(),
                     .localClock = SystemLocalClock(),
                     .now = {},
                     .interrupts = [] { return 0; },
                     .regional = {},
                     .leave =
                         [&](TExitCode code) {
                             left = code;
                             proxy.CutNow();
                         },
                     .longestAnswer = longest};
        try {
            articles_ = ReadShopArticles(options, world).articles.RowCount();
        } catch (const TDatabaseError&) {
            articles_ = 0;
        }
        return left;
    }

    std::ostringstream out_;
    std::ostringstream err_;
    std::size_t articles_ = 0;
};

TEST_F(SilentShopTest, AnAnswerThatIsLostEndsTheProcessWhereverItIsLost) {
    for (const int piece : {1, 2, 3, 5, 9, 14}) {
        TCuttingProxy proxy(OwnServer().Address());
        proxy.SwallowFromPiece(piece);
        err_.str("");
        EXPECT_EQ(ReadThrough(proxy, std::chrono::seconds(1)), TExitCode::Database) << piece;
        EXPECT_EQ(articles_, 0U);
        EXPECT_EQ(err_.str(),
                  "tolvane: The database has not answered for 1 seconds; no scale was touched.\n");
    }
    TCuttingProxy proxy(OwnServer().Address());
    EXPECT_EQ(ReadThrough(proxy, std::chrono::seconds(60)), std::nullopt);
    EXPECT_EQ(articles_, 305U);
}

}  // namespace
}  // namespace tolvane::test

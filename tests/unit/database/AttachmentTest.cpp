#include "database/Attachment.h"

#include <gtest/gtest.h>

#include "database/DatabaseError.h"

namespace tolvane {
namespace {

TEST(Attachment, APlainPathOrAnAliasIsForTheEmbeddedEngine) {
    EXPECT_TRUE(IsEmbedded("/var/shop/shop.fdb"));
    EXPECT_TRUE(IsEmbedded("/var/shop:old/shop.fdb"));
    EXPECT_TRUE(IsEmbedded("shop.fdb"));
    EXPECT_TRUE(IsEmbedded("../shop.fdb"));
    EXPECT_TRUE(IsEmbedded("shop"));
    EXPECT_TRUE(IsEmbedded("C:\\shop\\shop.fdb"));
    EXPECT_TRUE(IsEmbedded("d:/shop/shop.fdb"));
    EXPECT_TRUE(IsEmbedded("магазин.fdb"));
}

TEST(Attachment, AServerIsNamedBeforeAColonOrInAUrl) {
    EXPECT_FALSE(IsEmbedded("localhost:/var/shop.fdb"));
    EXPECT_FALSE(IsEmbedded("192.168.0.1/3051:C:\\shop.fdb"));
    EXPECT_FALSE(IsEmbedded("server:shop"));
    EXPECT_FALSE(IsEmbedded("[::1]/3050:/var/shop.fdb"));
    EXPECT_FALSE(IsEmbedded("inet://server:3050//var/shop.fdb"));
    EXPECT_FALSE(IsEmbedded("xnet://shop.fdb"));
    EXPECT_FALSE(IsEmbedded("\\\\server\\C:\\shop.fdb"));
}

TEST(Attachment, WithoutAClientLibraryTheLibrarysErrorIsThrown) {
    try {
        TAttachment attachment({.database = "server:shop", .clientLibrary = "no-such-client"});
        FAIL() << "attached";
    } catch (const TDatabaseError& error) {
        EXPECT_TRUE(std::string(error.what())
                        .starts_with("The Firebird client library cannot be loaded:\n"
                                     "no-such-client: "))
            << error.what();
    }
}

}  // namespace
}  // namespace tolvane

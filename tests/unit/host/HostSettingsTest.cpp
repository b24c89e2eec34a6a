#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/HostSettings.h"

namespace tolvane::host {
namespace {

using TTexts = std::vector<std::string>;

TEST(HostSettings, WithoutAFileThereIsNoDatabaseAndTheUsualUser) {
    const THostSettings settings = ReadHostSettings(TIniDocument());
    EXPECT_EQ(settings.database, "");
    EXPECT_EQ(settings.user, "SYSDBA");
    EXPECT_EQ(settings.password, "");
}

TEST(HostSettings, ALoginChangesNothingElse) {
    TIniDocument document(
        "[Database]\r\n; ours\r\nDatabase=old\r\nRole=SELLER\r\nClientLibrary=fb\\c.dll\r\n\r\n"
        "[Grid]\r\nLines=1\r\n");
    WriteLogin({.database = "host/3050:C:\\Shop\\SHOP.FDB",
                .user = "IVAN",
                .password = " two words",
                .role = "ignored",
                .clientLibrary = "ignored"},
               document);
    EXPECT_EQ(document.Bytes(),
              "[Database]\r\n; ours\r\nDatabase=host/3050:C:\\Shop\\SHOP.FDB\r\nRole=SELLER\r\n"
              "ClientLibrary=fb\\c.dll\r\nUser=IVAN\r\nPassword=\" two words\"\r\n\r\n"
              "[Grid]\r\nLines=1\r\n");
    const THostSettings settings = ReadHostSettings(document);
    EXPECT_EQ(settings.password, " two words");
    EXPECT_EQ(settings.role, "SELLER");
    EXPECT_EQ(settings.clientLibrary, "fb\\c.dll");
}

TEST(LastDatabases, TheLatestComesFirst) {
    TIniDocument document;
    EXPECT_TRUE(LastDatabases(document).empty());
    AddLastDatabase("a", document);
    AddLastDatabase("b", document);
    EXPECT_EQ(document.Bytes(), "[Databases]\r\n1=b\r\n2=a\r\n");
    EXPECT_EQ(LastDatabases(document), (TTexts{"b", "a"}));
}

TEST(LastDatabases, OneThatIsOpenedAgainMovesToTheFront) {
    TIniDocument document;
    for (const char* const name : {"a", "b", "c", "a"})
        AddLastDatabase(name, document);
    EXPECT_EQ(LastDatabases(document), (TTexts{"a", "c", "b"}));
}

TEST(LastDatabases, OfSixTheOldestGoes) {
    TIniDocument document;
    for (const char* const name : {"a", "b", "c", "d", "e", "f"})
        AddLastDatabase(name, document);
    EXPECT_EQ(LastDatabases(document), (TTexts{"f", "e", "d", "c", "b"}));
}

}  // namespace
}  // namespace tolvane::host

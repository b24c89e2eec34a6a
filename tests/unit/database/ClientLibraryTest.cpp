#include "database/ClientLibrary.h"

#include <gtest/gtest.h>

#include <string>

#include "database/DatabaseError.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

std::string ErrorOf(const char* name) {
    try {
        const TClientLibrary library(name);
    } catch (const TDatabaseError& error) {
        return ToUtf8(error.what());
    }
    return {};
}

TEST(ClientLibrary, ALibraryThatIsNotLoadedIsNamed) {
    EXPECT_EQ(ErrorOf("no-such-client.dll"),
              "Клиентската библиотека на базата данни не е заредена: no-such-client.dll");
}

TEST(ClientLibrary, WithoutANameTheUsualOnesAreNamedWhenNoneIsLoaded) {
    // This program is not linked with a client library.
    EXPECT_EQ(ErrorOf(nullptr),
              "Клиентската библиотека на базата данни не е заредена: libfbclient.so.2");
}

TEST(ClientLibrary, ALibraryWithoutItsFunctionsIsNamedWithTheFirstMissingOne) {
    EXPECT_EQ(ErrorOf("libc.so.6"),
              "В клиентската библиотека libc.so.6 липсва функцията isc_start_multiple");
}

TEST(ClientLibrary, IsNotLoadedByBinding) {
    EXPECT_NE(ErrorOf("libfbclient.so.2"), "");
    EXPECT_NE(ErrorOf("libfbclient.so.2"), "");
}

TEST(ClientLibrary, ACyrillicNameIsShownAsItIs) {
    EXPECT_EQ(ErrorOf(std::string("клиент.dll"_cp1251).c_str()),
              "Клиентската библиотека на базата данни не е заредена: клиент.dll");
}

}  // namespace
}  // namespace tolvane

#include "database/ClientLibrary.h"

#include <gtest/gtest.h>

#include <string>

#include "database/DatabaseError.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

// The library that is looked for when no name is given, and one of the system's that every program
// has loaded.
#ifdef _WIN32
constexpr const char* kUsualNames = "fbclient.dll, gds32.dll";
constexpr const char* kOtherLibrary = "kernel32.dll";
#else
constexpr const char* kUsualNames = "libfbclient.so.2";
constexpr const char* kOtherLibrary = "libc.so.6";
#endif

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
              std::string("Клиентската библиотека на базата данни не е заредена: ") + kUsualNames);
}

TEST(ClientLibrary, ALibraryWithoutItsFunctionsIsNamedWithTheFirstMissingOne) {
    EXPECT_EQ(ErrorOf(kOtherLibrary), std::string("В клиентската библиотека ") + kOtherLibrary +
                                          " липсва функцията isc_start_multiple");
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

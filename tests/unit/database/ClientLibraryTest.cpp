#include "database/ClientLibrary.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "database/ClientFunctions.h"
#include "database/DatabaseError.h"
#include "system/Library.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

// The library that is looked for when no name is given, and one of the system's that every program
// has loaded.
#ifdef _WIN32
constexpr const char* kUsualNames = "fbclient.dll, gds32.dll";
constexpr const char* kOtherLibrary = "kernel32.dll";
constexpr const char* kNotLoaded = "winmm.dll";
constexpr const char* kNothingFound =
    "The Firebird client library cannot be loaded:\n"
    "no-such-client.dll: Module not found (126)\nnor-this.dll: Module not found (126)\n"
    "Install the 32-bit Firebird client (fbclient.dll), or name its file with --client-library.";
#else
constexpr const char* kUsualNames = "libfbclient.so.2";
constexpr const char* kOtherLibrary = "libc.so.6";
constexpr const char* kNotLoaded = "libBrokenLocale.so.1";
constexpr const char* kNothingFound =
    "The Firebird client library cannot be loaded:\n"
    "no-such-client.dll: cannot open shared object file: No such file or directory\n"
    "nor-this.dll: cannot open shared object file: No such file or directory\n"
    "Install the Firebird client (Debian: libfbclient2), or name its file with --client-library.";
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

std::string LoadErrorOf(const std::vector<std::filesystem::path>& names) {
    try {
        TClientLibrary::LoadOneOf(names);
    } catch (const TDatabaseError& error) {
        return ToUtf8(error.what());
    }
    return {};
}

TEST(ClientLibraryLoad, EveryNameThatWasTriedIsToldWithTheSystemsWordsAndTheCure) {
    EXPECT_EQ(LoadErrorOf({"no-such-client.dll", "nor-this.dll"}), kNothingFound);
}

TEST(ClientLibraryLoad, ALibraryWithoutTheFunctionsIsNamedAndFreed) {
    const std::string error = LoadErrorOf({"no-such-client.dll", kNotLoaded});
    EXPECT_TRUE(error.starts_with(std::string(kNotLoaded) +
                                  " is no Firebird client library: it lacks the function "
                                  "isc_start_multiple.\n"))
        << error;
    EXPECT_EQ(FindLoadedLibrary(kNotLoaded), nullptr);
}

// A library like a client's, without isc_attach_database.
TEST(ClientLibraryLoad, ALibraryThatCannotAttachIsNamedWithTheFunction) {
    const std::string error = LoadErrorOf({TOLVANE_CLIENT_WITHOUT_ATTACH});
    EXPECT_NE(error.find("it lacks the function isc_attach_database."), std::string::npos) << error;
}

TEST(ClientLibraryLoad, TheHostsLibraryNeedsNoFunctionToAttach) {
    const std::filesystem::path file = TOLVANE_CLIENT_WITHOUT_ATTACH;
    const TLibrary loaded(file);
    const TClientLibrary library(file.string().c_str());
    EXPECT_NE(library.Functions().fetch, nullptr);
    EXPECT_EQ(library.Functions().attachDatabase, nullptr);
}

}  // namespace
}  // namespace tolvane

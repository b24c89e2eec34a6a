#include "system/Library.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

#include "tests/support/ScratchFolder.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

// A library that every system of the kind has and no test program has loaded, one of its functions,
// and the system's words for a missing library and for a file that is none.
#ifdef _WIN32
constexpr const char* kName = "winmm.dll";
constexpr const char* kFunction = "timeGetTime";
constexpr const char* kMissing = "(126)";
constexpr const char* kNoLibrary = "(193)";
#else
constexpr const char* kName = "libBrokenLocale.so.1";
constexpr const char* kFunction = "__ctype_get_mb_cur_max";
constexpr const char* kMissing = "No such file or directory";
constexpr const char* kNoLibrary = "invalid ELF header";
#endif

std::string ErrorOf(const std::filesystem::path& name) {
    try {
        const TLibrary library(name);
    } catch (const TFailure& failure) {
        return ToUtf8(failure.Text());
    }
    return {};
}

TEST(Library, IsLoadedUntilItsEnd) {
    ASSERT_EQ(FindLoadedLibrary(kName), nullptr);
    {
        const TLibrary library(kName);
        EXPECT_NE(FindLoadedLibrary(kName), nullptr);
        EXPECT_NE(FindFunction(library.Handle(), kFunction), nullptr);
        EXPECT_EQ(FindFunction(library.Handle(), "NoSuchFunction"), nullptr);
    }
    EXPECT_EQ(FindLoadedLibrary(kName), nullptr);
}

TEST(Library, AMovedOneIsFreedOnce) {
    std::optional<TLibrary> first(kName);
    TLibrary second = std::move(*first);
    first.reset();
    EXPECT_NE(FindLoadedLibrary(kName), nullptr);
    {
        TLibrary third(kName);
        third = std::move(second);
    }
    EXPECT_NE(FindLoadedLibrary(kName), nullptr);
    { const TLibrary last = std::move(second); }
    EXPECT_EQ(FindLoadedLibrary(kName), nullptr);
}

TEST(Library, AMissingOneIsToldInTheSystemsWords) {
    const std::string error = ErrorOf("no-such-library-at-all.dll");
    EXPECT_NE(error.find(kMissing), std::string::npos) << error;
}

TEST(Library, AFileThatIsNoLibraryIsToldInTheSystemsWords) {
    const TScratchFolder folder;
    const std::filesystem::path file = folder / "fbclient.dll";
    PutFile(file, std::string(4096, '#'));
    const std::string error = ErrorOf(file);
    EXPECT_NE(error.find(kNoLibrary), std::string::npos) << error;
}

// The last one, as the library stays.
TEST(LibraryKept, StaysLoaded) {
    {
        TLibrary library(kName);
        library.Keep();
    }
    EXPECT_NE(FindLoadedLibrary(kName), nullptr);
}

}  // namespace
}  // namespace tolvane

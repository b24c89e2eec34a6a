#include "system/OutputFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <system_error>

#ifndef _WIN32
#include "tests/support/FileLimit.h"
#endif
#include "tests/support/ScratchFolder.h"

namespace tolvane {
namespace {

TEST(OutputFile, EmptiesTheFileThatWasThere) {
    const TScratchFolder folder;
    PutFile(folder / "a", "of an earlier run");
    const TOutputFile file(folder / "a");
    EXPECT_EQ(GetFile(folder / "a"), "");
}

TEST(OutputFile, WhatIsWrittenIsInTheFileAtOnce) {
    const TScratchFolder folder;
    TOutputFile file(folder / u8"Запис");
    file.Write(std::string_view("a\0b\r\n", 5));
    EXPECT_EQ(GetFile(folder / u8"Запис"), std::string("a\0b\r\n", 5));
    file.Write("c");
    EXPECT_EQ(GetFile(folder / u8"Запис"), std::string("a\0b\r\nc", 6));
}

TEST(OutputFile, AFileThatCannotBeMadeIsAnErrorOfTheSystem) {
    const TScratchFolder folder;
    try {
        const TOutputFile file(folder / "missing" / "a");
        FAIL() << "the file was made";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().default_error_condition(), std::errc::no_such_file_or_directory);
    }
}

#ifndef _WIN32
TEST(OutputFile, WhatIsWrittenOnlyInPartIsTakenOut) {
    const TScratchFolder folder;
    TOutputFile file(folder / "a");
    file.Write("123456");
    const test::TFileLimit limit(10);
    try {
        file.Write("789012");
        FAIL() << "all was written";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), EFBIG);
    }
    EXPECT_EQ(GetFile(folder / "a"), "123456");
}
#endif

}  // namespace
}  // namespace tolvane

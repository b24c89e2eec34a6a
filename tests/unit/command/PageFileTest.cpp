#include "command/PageFile.h"

#include <gtest/gtest.h>

#include "command/NamedFile.h"
#include "command/UsageError.h"
#include "tests/support/ScratchFolder.h"

namespace tolvane::test {
namespace {

class PageFileTest : public testing::Test {
protected:
    TCommandOptions Options(const std::filesystem::path& report) const {
        TCommandOptions options;
        options.report = report;
        return options;
    }
    void Open(const TCommandOptions& options) {
        page_.Open(options,
                   {.title = "T", .facts = {{.name = "Begun", .value = "now"}, {"By", "us"}}},
                   [] { return 1.5; });
    }
    // Why the report is refused; empty when it is not.
    std::string Refusal(const TCommandOptions& options) {
        try {
            Open(options);
            return {};
        } catch (const TUsageError& error) {
            EXPECT_FALSE(page_.IsOpen());
            return error.what();
        }
    }
    std::string RefusalOf(const std::filesystem::path& file, const std::string& why) const {
        return "The report " + Utf8Path(file) + " cannot be written: " + why;
    }

    TScratchFolder folder_;
    std::filesystem::path file_ = folder_ / "report.html";
    TPageFile page_;
};

TEST_F(PageFileTest, NothingIsWrittenWithoutAName) {
    EXPECT_EQ(page_.Write(TExitCode::Done, {}), "");
    Open(Options({}));
    EXPECT_FALSE(page_.IsOpen());
    EXPECT_EQ(page_.Write(TExitCode::Done, {}), "");
    EXPECT_EQ(folder_.FileCount(), 0U);
}

TEST_F(PageFileTest, APageIsThereOnlyWhenItIsWhole) {
    Open(Options(file_));
    EXPECT_TRUE(page_.IsOpen());
    EXPECT_EQ(folder_.FileCount(), 0U);
    page_.SetContent({.messages = {"Short."}, .sections = {{.title = "Long"}}});
    EXPECT_EQ(page_.Write(TExitCode::Database, "no\nserver"), "");
    EXPECT_EQ(folder_.FileCount(), 1U);
    EXPECT_EQ(GetFile(file_),
              PageText({.title = "T",
                        .exitCode = TExitCode::Database,
                        .messages = {"no\nserver", "Short."},
                        .facts = {{"Begun", "now"}, {"Took", "1.5 s"}, {"By", "us"}},
                        .sections = {{.title = "Long"}}}));
}

TEST_F(PageFileTest, APageIsReplacedAndSoIsAnEmptyFile) {
    for (const char* before : {"<!DOCTYPE html>\n<p>old", "<!doctype HTML>", ""}) {
        PutFile(file_, before);
        Open(Options(file_));
        EXPECT_EQ(GetFile(file_), before) << "before the end";
        EXPECT_EQ(page_.Write(TExitCode::Done, {}), "");
        EXPECT_TRUE(GetFile(file_).starts_with("<!DOCTYPE html>\n<html"));
    }
}

TEST_F(PageFileTest, AFileThatIsNoPageIsKept) {
    for (const char* before : {"[SCALE1]\nScaleNumb=1\n", "<", "<!DOCTYPE htm"}) {
        PutFile(file_, before);
        EXPECT_EQ(Refusal(Options(file_)),
                  RefusalOf(file_, "the file is there and is no page. Name another one."));
        EXPECT_EQ(GetFile(file_), before);
    }
}

TEST_F(PageFileTest, AFolderAndAMissingFolderAreRefused) {
    EXPECT_EQ(Refusal(Options(folder_.Path())),
              RefusalOf(folder_.Path(), "it is there and is no file."));
    const std::filesystem::path lost = folder_ / "no" / "report.html";
    EXPECT_TRUE(Refusal(Options(lost)).starts_with(RefusalOf(lost, "")));
    EXPECT_EQ(folder_.FileCount(), 0U);
}

TEST_F(PageFileTest, TheFileOfTheLogOrTheTraceIsRefused) {
    TCommandOptions options = Options(file_);
    options.log = folder_ / "." / "report.html";
    PutFile(file_, "");
    EXPECT_EQ(Refusal(options), RefusalOf(file_, "--log names the same file."));
    std::filesystem::remove(file_);
    options = Options(file_);
    options.trace = folder_ / "." / "report.html";
    EXPECT_EQ(Refusal(options), RefusalOf(file_, "--trace names the same file."));
    options.trace = folder_ / "other.html";
    EXPECT_EQ(Refusal(options), "");
}

TEST_F(PageFileTest, WhatAKilledRunHasLeftIsRemoved) {
    PutFile(folder_ / "report.html.tolvane-0123456789abcdef.tmp", "<!DOCTYPE html>\n<p>half");
    PutFile(folder_ / "other.html.tolvane-0123456789abcdef.tmp", "another's");
    Open(Options(file_));
    EXPECT_EQ(page_.Write(TExitCode::Done, {}), "");
    EXPECT_FALSE(std::filesystem::exists(folder_ / "report.html.tolvane-0123456789abcdef.tmp"));
    EXPECT_EQ(folder_.FileCount(), 2U);
}

TEST_F(PageFileTest, AFolderThatVanishesIsAFailureAtTheEnd) {
    std::filesystem::create_directory(folder_ / "gone");
    const std::filesystem::path file = folder_ / "gone" / "report.html";
    Open(Options(file));
    std::filesystem::remove(folder_ / "gone");
    EXPECT_TRUE(page_.Write(TExitCode::Done, {}).starts_with(RefusalOf(file, "")));
}

#ifndef _WIN32
TEST_F(PageFileTest, ADeviceIsNotReplaced) {
    EXPECT_EQ(Refusal(Options("/dev/null")), RefusalOf("/dev/null", "it is there and is no file."));
}

TEST_F(PageFileTest, ALinkStaysAndItsFileIsReplaced) {
    PutFile(folder_ / "real.html", "");
    std::filesystem::create_symlink("real.html", file_);
    Open(Options(file_));
    EXPECT_EQ(page_.Write(TExitCode::Done, {}), "");
    EXPECT_TRUE(std::filesystem::is_symlink(file_));
    EXPECT_TRUE(GetFile(folder_ / "real.html").starts_with("<!DOCTYPE html>"));
}

TEST_F(PageFileTest, AWriteProtectedPageIsKept) {
    PutFile(file_, "<!DOCTYPE html>");
    std::filesystem::permissions(file_, std::filesystem::perms::owner_read);
    const std::string refusal = Refusal(Options(file_));
    // Root may write everything.
    EXPECT_TRUE(refusal.empty() || refusal.starts_with(RefusalOf(file_, ""))) << refusal;
    EXPECT_EQ(GetFile(file_), "<!DOCTYPE html>");
}
#endif

}  // namespace
}  // namespace tolvane::test

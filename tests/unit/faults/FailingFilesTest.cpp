#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "command/PageFile.h"
#include "config/IniFile.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/command/Shop.h"
#include "tests/unit/faults/FailingCalls.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using std::filesystem::path;

// A call of a save to the system, in order, and what the user is told when it fails; nothing when
// the save gets through without it.
struct TStep {
    const char* call;
    std::string told = {};
};

// A new file is written beside the old one and takes its place; what can fail says `unsaved`.
std::vector<TStep> ReplacingSteps(const std::string& unsaved) {
    return {{"open", unsaved},                                          // of the new file
            {"flock"},         {"write", unsaved},  {"stat", unsaved},  // the old file's rights
            {"fchown"},        {"fchmod", unsaved}, {"fsync", unsaved}, {"rename", unsaved},
            {"open"},  // of the folder, to have it flushed
            {"fsync"}};
}

std::vector<TStep> operator+(std::vector<TStep> steps, const std::vector<TStep>& more) {
    steps.insert(steps.end(), more.begin(), more.end());
    return steps;
}

// Saves with each step failing in turn, once and for good. `save` returns what it is told.
class FailingFiles : public ::testing::Test {
protected:
    void FailEachStep(const path& file, const std::function<void()>& putOld,
                      const std::function<std::string()>& save, const std::vector<TStep>& steps) {
        std::vector<std::string> names;
        for (const TStep& step : steps)
            names.emplace_back(step.call);
        putOld();
        const std::string before = GetFile(file);
        {
            const TFailingCalls calls(0, TFailingCalls::Once);
            EXPECT_EQ(save(), "");
            ASSERT_EQ(TFailingCalls::Calls(), names);
        }
        const std::string after = GetFile(file);
        ASSERT_NE(before, after);
        for (std::size_t i = 0; i < steps.size(); ++i) {
            for (const auto howLong : {TFailingCalls::Once, TFailingCalls::ForGood}) {
                SCOPED_TRACE(std::to_string(i + 1) + " " + steps[i].call +
                             (howLong == TFailingCalls::Once ? " once" : " for good"));
                std::string expected = steps[i].told;
                for (std::size_t next = i; howLong == TFailingCalls::ForGood && expected.empty() &&
                                           ++next < steps.size();)
                    expected = steps[next].told;
                putOld();
                std::string told;
                {
                    const TFailingCalls calls(static_cast<int>(i) + 1, howLong);
                    told = save();
                }
                EXPECT_EQ(told, expected);
                EXPECT_EQ(GetFile(file), expected.empty() ? after : before);
                EXPECT_TRUE(folder_.FileCount() == 1 || howLong == TFailingCalls::ForGood);
                // What a save leaves that could not even tidy up, the next one removes.
                EXPECT_EQ(save(), "");
                EXPECT_EQ(GetFile(file), after);
                EXPECT_EQ(folder_.FileCount(), 1U);
            }
        }
    }

    TScratchFolder folder_;
};

TEST_F(FailingFiles, AConfigurationFileIsTheOldOrTheNewOneWhole) {
    const path file = folder_ / "a.ini";
    const std::string unread =
        "Файлът " + file.string() + " не може да бъде прочетен: Input/output error (5)";
    const std::string unsaved =
        "Файлът " + file.string() + " не може да бъде записан: Input/output error (5)";
    const auto save = [&]() -> std::string {
        try {
            UpdateIniFile(file,
                          [](TIniDocument& document) { document.WriteText("A", "k", "new"); });
            return {};
        } catch (const TFileError& error) {
            return ToUtf8(error.what());
        }
    };
    FailEachStep(
        file,
        [&] {
            PutFile(file, "[A]\r\nk=old\r\n[B]\r\nforeign\r\n");
            chmod(file.c_str(), 0600);
        },
        save,
        std::vector<TStep>{{"open"},  // of the folder, for the lock between programs
                           {"flock"},
                           {"open", unread},
                           {"read", unread},
                           {"read", unread},   // the end
                           {"open", unsaved},  // whether anything has changed
                           {"read", unsaved},
                           {"read", unsaved},
                           {"stat"},  // whether it is write-protected
                           {"access", unsaved}} +
            ReplacingSteps(unsaved));
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(FailingFiles, AConfigurationFileSurvivesWritesOfSingleBytes) {
    const path file = folder_ / "a.ini";
    TIniDocument document;
    document.WriteText("A", "k", std::string(1000, 'x'));
    TFailingCalls::LimitWrites(1);
    WriteIniFile(file, document);
    TFailingCalls::LimitWrites(0);
    EXPECT_EQ(GetFile(file), "[A]\r\nk=" + std::string(1000, 'x') + "\r\n");
}

class FailingLedger : public FailingFiles {
protected:
    path File() const { return folder_ / "scale-3.json"; }
    void PutOld() {
        TLedger::Forget(folder_.Path(), 3);
        TLedger old = LoadAt(folder_.Path(), kNoon);
        old.Confirm(Report());
        old.Claim(7, 70, kNoon);
        old.Save(kNoon);
    }
    std::string Told(const char* what) const {
        return "the ledger " + File().string() + " cannot be " + what + ": Input/output error (5)";
    }
    static std::string ErrorOf(const std::function<void()>& work) {
        try {
            work();
            return {};
        } catch (const std::exception& error) {
            return error.what();
        }
    }
};

TEST_F(FailingLedger, IsTheOldOrTheNewOneWhole) {
    FailEachStep(
        File(), [&] { PutOld(); },
        [&] {
            return ErrorOf([&] {
                TLedger ledger = LoadAt(folder_.Path(), kNoon);
                ledger.Confirm(Report());
                ledger.Claim(8, 80, kNoon);
                ledger.Save(kNoon);
            });
        },
        std::vector<TStep>{
            {"open", Told("read")}, {"read", Told("read")}, {"read", Told("read")}} +  // the end
            ReplacingSteps(Told("saved")));
}

// A run goes on with the same object after a save that has failed.
TEST_F(FailingLedger, KeepsItsClaimsForTheNextSave) {
    PutOld();
    for (int n = 1; n <= 8; ++n) {
        SCOPED_TRACE(n);
        TLedger ledger = LoadAt(folder_.Path(), kNoon);
        ledger.Confirm(Report());
        ledger.Claim(100 + n, 80, kNoon);
        {
            const TFailingCalls calls(n, TFailingCalls::ForGood);
            EXPECT_EQ(ErrorOf([&] { ledger.SaveIfDue(kNoon); }), Told("saved"));
        }
        ledger.SaveIfDue(kNoon);
        EXPECT_TRUE(LoadAt(folder_.Path(), kNoon).Holds(100 + n, 80));
        EXPECT_EQ(folder_.FileCount(), 1U);
    }
}

// The page that a run leaves.
TEST_F(FailingFiles, AReportIsTheOldOrTheNewPageWhole) {
    const path file = folder_ / "report.html";
    TCommandOptions options;
    options.report = file;
    PutFile(file, "");
    TPageFile page;
    page.Open(options, {.title = "T"}, [] { return 1.5; });
    const std::string unwritten =
        "The report " + file.string() + " cannot be written: Input/output error (5).";
    FailEachStep(
        file, [&] { PutFile(file, "<!DOCTYPE html>\n<p>old"); },
        [&] { return page.Write(TExitCode::Done, {}); }, ReplacingSteps(unwritten));
}

}  // namespace
}  // namespace tolvane::test

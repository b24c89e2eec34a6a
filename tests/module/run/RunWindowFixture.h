#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "MeasuredScript.h"
#include "simulator/VirtualScale.h"
#include "tests/support/Clocks.h"
#include "tests/support/upload/UploadFixture.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/ObjectCounts.h"
#include "upload/forms/SetPluUnit.h"
#include "window/Window.h"

namespace tolvane::test {

inline constexpr const char* kLogSeparator = "-----------------------------------------";

// Each line with CR LF after it.
std::string Lines(const std::vector<std::string>& lines);

// The run window with two virtual scales (slots 1 and 2, of which only the first is checked) and
// articles 12 and 7. Its owner stands for the list window and is a child of a main window, as an
// MDI child is.
class TRunWindowTest : public ::testing::Test {
protected:
    TRunWindowTest();
    ~TRunWindowTest() override;

    void SetArticles(const std::vector<TArticle>& articles);
    // Gives a slot another virtual scale.
    void ReplaceScale(int slot, const simulator::TScaleOptions& options);
    simulator::TVirtualScale& Scale(int slot) {
        return *virtualScales_.at(static_cast<std::size_t>(slot) - 1);
    }
    // For tests that do nothing in the middle of a run.
    void ShortenPauses() { context_.clock = &shortPauses_; }
    // The scale answers nothing, from the first request on.
    void SetSilent(int slot);
    // Price writes that have come to the scale.
    int PriceWrites(int slot);

    static HWND Form() { return ThreadWindow(kSetPluFormClass); }
    static HWND Box() { return ThreadWindow(kMessageBoxClass); }
    static HWND Part(const char* name);
    static bool IsEnabled(const char* name) { return IsWindowEnabled(Part(name)) != 0; }
    static bool IsAtRest() { return Form() != nullptr && IsEnabled("OkBtn"); }
    static bool IsRunning() { return Form() != nullptr && IsEnabled("StopReadBtn"); }
    static std::string TextOf(const char* name) { return Utf8TextOf(Part(name)); }
    static std::string Log() { return TextOf("StatusMemo"); }
    static bool LogHas(const std::string& text) { return Log().find(text) != std::string::npos; }
    // The window is at rest, and the log ends with the closing line of a run.
    static bool LogEnds();
    // Expects the controls' states of a run over listed articles, or at rest.
    static void ExpectControls(bool running);

    // Steps of the user.
    void ThenStart(const char* button);
    void ThenAnswer(int button);
    void ThenClose();

    // Call NoteThreads while a run works. After the run has ended, one of the threads noted must be
    // gone. (A smaller number would prove nothing: the system starts threads of its own.)
    void NoteThreads() { threadsInRun_ = Threads(); }
    void ExpectThreadGone() const {
        const std::set<TThreadKey> now = Threads();
        EXPECT_FALSE(
            std::includes(now.begin(), now.end(), threadsInRun_.begin(), threadsInRun_.end()));
    }

    // Returns when the window has closed and all steps were taken.
    void Show(int runNumber);
    std::string Ini() const;

    HWND frame_ = nullptr;
    HWND owner_ = nullptr;
    TScaleTable scales_;
    TRunContext context_;
    TQuickClock shortPauses_{{.shorterPauses = 10}};
    std::array<std::unique_ptr<simulator::TVirtualScale>, 2> virtualScales_;
    TMeasuredScript script_;
    std::string log_;  // when ThenClose closed the window
    TSeenBox box_;     // the last that ThenAnswer answered
    std::set<TThreadKey> threadsInRun_;
};

}  // namespace tolvane::test

#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/module/Commands.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {

// The list window's settings command over a configuration file of the test's own.
class TSettingsSession : public testing::Test {
protected:
    TSettingsSession() { TConfiguration::Write(kBefore); }

    static std::string Content() { return TConfiguration::Bytes(); }
    void OpenSettings(std::vector<TDialogScript::TStep> steps) const {
        const TDialogScript script(L"TScaleComunicationForm", std::move(steps));
        SendMessageW(session_.List(), WM_COMMAND, kSettingsCommand, 0);
        EXPECT_TRUE(script.IsDone());
        EXPECT_FALSE(script.WasLeftOpen());
    }
    // Deletes the file's only scale in the editor and confirms.
    void DeleteTheScale() const { OpenSettings({Pressing("btnDeleteScale"), Pressing("btnOk")}); }

    static constexpr const char* kBefore =
        "; by hand\r\n[SCALE3]\r\nTCPAddress=10.0.0.5\r\n[OTHER]\r\nkey = value\r\n";
    // The same file without its scale.
    static constexpr const char* kWithoutScale = "; by hand\r\n[OTHER]\r\nkey = value\r\n";
    TSession session_;
};

// The system's text for an error and its number, as every message of the module shows them.
inline std::string SystemWords(DWORD number) {
    wchar_t text[512] = {};
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, number, 0,
                   text, 512, nullptr);
    std::wstring words = text;
    words.resize(words.find_last_not_of(L".\r\n ") + 1);
    return Utf8(words) + " (" + std::to_string(number) + ")";
}

// Expects exactly one box, with the error icon and one button, that names the configuration file,
// what failed, the reason in the system's words and its number.
inline void ExpectOneFileBox(const TBoxAnswerer& boxes, const std::string& fileName,
                             const std::string& whatFailed, DWORD number) {
    ASSERT_EQ(boxes.Seen().size(), 1U);
    const TSeenBox& box = boxes.Seen()[0];
    const std::wstring folder = TConfiguration::File().parent_path().wstring();
    EXPECT_EQ(box.icon, TBoxIcon::Error);
    EXPECT_EQ(box.buttons.size(), 1U);
    EXPECT_EQ(box.text, "Файлът " + Utf8(folder) + "\\" + fileName + " " + whatFailed + ": " +
                            SystemWords(number));
}
inline void ExpectNotWritten(const TBoxAnswerer& boxes, DWORD number) {
    ExpectOneFileBox(boxes, "Tolvane.Ini", "не може да бъде записан", number);
}

}  // namespace tolvane::test

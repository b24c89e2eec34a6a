#include "tests/module/settings/SettingsFixture.h"

namespace tolvane::test {
namespace {

// The address field with what it showed after each step.
class IpMaskEditTest : public ScaleSettingsFixture {
protected:
    static HWND Field(HWND window) { return ControlOf(window, "edtIpAddress"); }
    static std::string Shown(HWND window) { return TextOf(window, "edtIpAddress"); }
    static void Focus(HWND window, int start, int end) {
        SetFocus(Field(window));
        SendMessageW(Field(window), EM_SETSEL, static_cast<WPARAM>(start), end);
    }
    static std::pair<DWORD, DWORD> Selection(HWND window) {
        DWORD start = 0;
        DWORD end = 0;
        SendMessageW(Field(window), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                     reinterpret_cast<LPARAM>(&end));
        return {start, end};
    }
    void Run(TSteps steps) {
        steps.push_back(Pressing("btnCancel"));
        Show(Tcp("192.168.1.10"), std::move(steps));
    }

    static void PutOnClipboard(const std::wstring& text) {
        const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
        CopyMemory(GlobalLock(memory), text.c_str(), bytes);
        GlobalUnlock(memory);
        ASSERT_NE(OpenClipboard(nullptr), 0);
        EmptyClipboard();
        SetClipboardData(CF_UNICODETEXT, memory);
        CloseClipboard();
    }
    static std::wstring OnClipboard() {
        std::wstring text;
        if (OpenClipboard(nullptr) == 0) return text;
        const HANDLE data = GetClipboardData(CF_UNICODETEXT);
        if (data != nullptr) text = static_cast<const wchar_t*>(GlobalLock(data));
        if (data != nullptr) GlobalUnlock(data);
        CloseClipboard();
        return text;
    }
};

}  // namespace

TEST_F(IpMaskEditTest, ShowsBlanksForEmptyPlaces) {
    Run({[](HWND window) {
        EXPECT_EQ(Shown(window), "192.168.1  .10 ");
        SetTextOf(window, "edtIpAddress", L"");
        EXPECT_EQ(Shown(window), "   .   .   .   ");
    }});
}

TEST_F(IpMaskEditTest, TypingReplacesTheSelectionAndStepsOverTheDots) {
    Run({[](HWND window) {
             Focus(window, 0, -1);
             PostText(L"10.0.0.7");
         },
         [](HWND window) {
             EXPECT_EQ(Shown(window), "10 .0  .0  .7  ");
             EXPECT_EQ(Selection(window), (std::pair<DWORD, DWORD>{13, 13}));
             Focus(window, 0, -1);
             PostText(L"192168001010");
         },
         [](HWND window) { EXPECT_EQ(Shown(window), "192.168.001.010"); }});
}

TEST_F(IpMaskEditTest, TakesDigitsOnly) {
    Run({[](HWND window) {
             Focus(window, 0, 0);
             PostText(L"abc -/ч");
         },
         [](HWND window) { EXPECT_EQ(Shown(window), "192.168.1  .10 "); }});
}

TEST_F(IpMaskEditTest, NeverGrows) {
    Run({[](HWND window) {
             Focus(window, 15, 15);
             PostText(L"999");
         },
         [](HWND window) {
             EXPECT_EQ(Shown(window), "192.168.1  .10 ");
             Focus(window, 13, 13);
             PostText(L"99");
         },
         [](HWND window) { EXPECT_EQ(Shown(window), "192.168.1  .199"); }});
}

TEST_F(IpMaskEditTest, BackspaceAndDeleteBlankPlacesButNoDots) {
    Run({[](HWND window) {
             Focus(window, 4, 4);
             PostText(L"\b");
         },
         [](HWND window) {
             EXPECT_EQ(Shown(window), "19 .168.1  .10 ");
             Focus(window, 3, 3);
             PostKey(VK_DELETE);
         },
         [](HWND window) {
             EXPECT_EQ(Shown(window), "19 . 68.1  .10 ");
             Focus(window, 0, -1);
             PostKey(VK_DELETE);
         },
         [](HWND window) { EXPECT_EQ(Shown(window), "   .   .   .   "); }});
}

TEST_F(IpMaskEditTest, PastesAnAddress) {
    PutOnClipboard(L" 10.0.0.7\r\n");
    Run({[](HWND window) {
        Focus(window, 6, 6);
        SendMessageW(Field(window), WM_PASTE, 0, 0);
        EXPECT_EQ(Shown(window), "10 .0  .0  .7  ");
    }});
}

TEST_F(IpMaskEditTest, RefusesToPasteWhatIsNoAddress) {
    PutOnClipboard(L"http://scale.local");
    Run({[](HWND window) {
        Focus(window, 0, -1);
        SendMessageW(Field(window), WM_PASTE, 0, 0);
        EXPECT_EQ(Shown(window), "192.168.1  .10 ");
        SendMessageW(Field(window), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"xyz"));
        EXPECT_EQ(Shown(window), "192.168.1  .10 ");
    }});
}

TEST_F(IpMaskEditTest, CutsToTheClipboard) {
    Run({[](HWND window) {
        Focus(window, 4, 7);
        SendMessageW(Field(window), WM_CUT, 0, 0);
        EXPECT_EQ(Shown(window), "192.   .1  .10 ");
        EXPECT_EQ(OnClipboard(), L"168");
    }});
}

TEST_F(IpMaskEditTest, UndoLeavesTheMask) {
    Run({[](HWND window) {
        Focus(window, 0, -1);
        SendMessageW(Field(window), WM_CLEAR, 0, 0);
        EXPECT_EQ(Shown(window), "   .   .   .   ");
        SendMessageW(Field(window), WM_UNDO, 0, 0);
        SendMessageW(Field(window), EM_UNDO, 0, 0);
        EXPECT_EQ(Shown(window), "   .   .   .   ");
    }});
}

}  // namespace tolvane::test

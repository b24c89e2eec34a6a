#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tolvane::test {

// Records, in order, what happens to the controls that it watches: "Label:text" for a text,
// "Memo>line" for each line that is added, "Button on" and "Button off". Counts paintings. It must
// live until the controls have gone.
class TControlRecorder {
public:
    void Watch(HWND control, const char* name);

    std::vector<std::string> events;  // UTF-8
    int paintings = 0;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR name, DWORD_PTR recorder);
    void Record(const std::string& name, UINT id, WPARAM wParam, LPARAM lParam);
    void RecordLines(const std::string& name, std::wstring text);
};

}  // namespace tolvane::test

#pragma once

#include <windows.h>

#include <array>
#include <cstddef>

#include "window/Form.h"

namespace tolvane {

inline constexpr const wchar_t* kHintFormClass = L"THintForm";

// The help window of the connection dialog: a tab for each kind of connection. Interface thread.
class THintForm : public TForm {
public:
    explicit THintForm(HWND owner);

protected:
    LRESULT HandleMessage(const TMessage& message) override;
    LRESULT OnNotify(NMHDR& header) override;
    bool OnKey(UINT virtualKey, HWND focus) override;

private:
    void MakePages();
    static LRESULT PageColour(const TMessage& message);
    void ShowPage(std::size_t page);
    std::size_t Page() const;

    HWND pageControl_ = nullptr;
    std::array<HWND, 3> pages_{};
    bool pressed_ = false;
};

}  // namespace tolvane

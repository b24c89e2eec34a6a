#pragma once

#include <windows.h>

#include "upload/RunProgress.h"
#include "window/Form.h"

namespace tolvane {

// Where the run window has room for the bar and its text, at 96 dots per inch.
struct TRunBarPlaces {
    TBounds bar;
    TBounds twoLines;  // for the text, where it is wide enough
    TBounds oneLine;   // otherwise
};

// The bar of the run window that shows how far the run has come, and its text: the articles done,
// all articles, and the time left. Neither is visible between runs. Plain handles; the form owns
// the controls. Interface thread.
class TRunBar {
public:
    // Makes the controls on the form. Throws TWindowError.
    void Make(TForm& form);
    void Arrange(const TForm& form, const TRunBarPlaces& places);
    // Hides the bar and the text when the number of articles is not known.
    void Show(const TRunCount& count);

private:
    void ShowText() const;

    HWND runBar_ = nullptr;
    HWND lblRunCount_ = nullptr;
    TRunCount count_;
    bool inTwoLines_ = true;
};

}  // namespace tolvane

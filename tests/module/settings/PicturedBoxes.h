#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {

// While it lives, takes a picture of the first message box, and answers it and all that follow with
// OK.
class TPicturedBoxes {
public:
    explicit TPicturedBoxes(std::string name)
        : first_(kMessageBoxClass, [this, name = std::move(name)](HWND box) {
              Picture(box, name);
              answerer_.emplace();
          }) {}
    TPicturedBoxes(const TPicturedBoxes&) = delete;
    TPicturedBoxes& operator=(const TPicturedBoxes&) = delete;

    std::vector<TSeenBox> Seen() const {
        return answerer_ ? answerer_->Seen() : std::vector<TSeenBox>();
    }

private:
    std::optional<TBoxAnswerer> answerer_;
    TUserScript first_;
};

}  // namespace tolvane::test

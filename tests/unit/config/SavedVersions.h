#pragma once

#include <string>

#include "config/IniDocument.h"
#include "tests/support/Environment.h"

namespace tolvane {

// How often the kill test kills.
inline int Kills() {
    return test::CountFromEnvironment("TOLVANE_KILLS", 200);
}

// One of the versions that the killed program saves in turn. It fills many blocks, so that a save
// takes a while and a torn file shows.
inline TIniDocument SavedVersion(char letter) {
    TIniDocument document;
    for (int i = 0; i < 2000; ++i)
        document.WriteText("A", "k" + std::to_string(i), std::string(80, letter));
    return document;
}

}  // namespace tolvane

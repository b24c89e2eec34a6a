#pragma once

#include <cstdlib>
#include <string>

#include "config/IniDocument.h"

namespace tolvane {

// How often the kill test kills; a release asks for more by TOLVANE_KILLS.
inline int Kills(int otherwise) {
    const char* asked = std::getenv("TOLVANE_KILLS");
    return asked == nullptr ? otherwise : std::atoi(asked);
}

// One of the contents that a save which is killed writes in turn: large enough for many blocks, so
// that a save takes a while and a torn file shows.
inline TIniDocument SavedVersion(char letter) {
    TIniDocument document;
    for (int i = 0; i < 2000; ++i)
        document.WriteText("A", "k" + std::to_string(i), std::string(80, letter));
    return document;
}

}  // namespace tolvane

#pragma once

namespace tolvane::simulator {

// Makes a console show what is printed to it as UTF-8. Output to a file or pipe is UTF-8 anyway.
void ShowUtf8();

}  // namespace tolvane::simulator

#pragma once

// Libraries that the process has already loaded; nothing here loads one. Any thread.

#include <string>
#include <vector>

namespace tolvane {

// A library that is loaded in this process, or null. `name` in code page 1251.
void* FindLoadedLibrary(const char* name);
// The address of an exported function, or null.
void* FindFunction(void* library, const char* name);
// What a client library is usually called, likeliest first.
std::vector<std::string> UsualClientLibraries();

}  // namespace tolvane

#pragma once

#include <string>
#include <string_view>

namespace tolvane {

// Files beside the host, by the full path of its executable. Texts are UTF-16, since a path may
// hold characters that code page 1251 lacks. Both '\' and '/' separate folders.

// The module's configuration file: "Operations\Tolvane.ini" in the executable's folder.
std::u16string ModuleConfigurationFile(std::u16string_view hostExecutable);
// The host's own settings: the executable's path with the extension ".ini".
std::u16string HostSettingsFile(std::u16string_view hostExecutable);

}  // namespace tolvane

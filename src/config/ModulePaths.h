#pragma once

#include <string>
#include <string_view>

namespace tolvane {

// Files beside the host, told from the full path of its executable. Texts are UTF-16, since a path
// may hold what code page 1251 lacks; both '\' and '/' part folders.

// The module's configuration file, as it is named for loading and for saving; the system's file
// names have no case, so both are the same file there.
std::u16string ModuleConfigurationForLoading(std::u16string_view hostExecutable);
std::u16string ModuleConfigurationForSaving(std::u16string_view hostExecutable);
// The host's own settings: the executable's path with the extension ".ini".
std::u16string HostSettingsFile(std::u16string_view hostExecutable);

}  // namespace tolvane

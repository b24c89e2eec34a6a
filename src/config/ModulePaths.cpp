#include "config/ModulePaths.h"

#include <cstddef>

namespace tolvane {

namespace {

std::size_t NameStart(std::u16string_view path) {
    const std::size_t delimiter = path.find_last_of(u"\\/:");
    return delimiter == std::u16string_view::npos ? 0 : delimiter + 1;
}

std::u16string InFolderOf(std::u16string_view hostExecutable, std::u16string_view name) {
    std::u16string path(hostExecutable.substr(0, NameStart(hostExecutable)));
    if (!path.empty() && path.back() == u':') path += u'\\';
    return path.append(name);
}

}  // namespace

std::u16string ModuleConfigurationFile(std::u16string_view hostExecutable) {
    return InFolderOf(hostExecutable, u"Operations\\Tolvane.ini");
}

std::u16string HostSettingsFile(std::u16string_view hostExecutable) {
    const std::size_t start = NameStart(hostExecutable);
    const std::size_t dot = hostExecutable.rfind(u'.');
    const bool hasExtension = dot != std::u16string_view::npos && dot >= start;
    return std::u16string(hostExecutable.substr(0, hasExtension ? dot : hostExecutable.size()))
        .append(u".ini");
}

}  // namespace tolvane

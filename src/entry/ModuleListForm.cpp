#include "entry/ModuleListForm.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "config/ModulePaths.h"
#include "entry/ModuleState.h"
#include "settings/forms/ScaleComunicationUnit.h"
#include "system/ProcessMemory.h"
#include "text/Cp1251.h"
#include "upload/forms/SetPluUnit.h"

namespace tolvane {
namespace {

std::u16string HostExecutable() {
    constexpr std::size_t kLongestPath = 32768;
    std::wstring path(kLongestPath, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return {path.begin(), path.end()};
}

constexpr std::string_view kNoPrintService =
    "Печатът на търговската система не може да бъде извикан (PrintProc)."_cp1251;

using TCountedText = std::array<std::uint8_t, 256>;

TCountedText Counted(std::string_view text) {
    TCountedText counted{};
    const std::size_t length = std::min(text.size(), counted.size() - 1);
    counted[0] = static_cast<std::uint8_t>(length);
    std::copy_n(text.begin(), length, counted.begin() + 1);
    return counted;
}

}  // namespace

TModuleListForm::TModuleListForm(HWND mdiClient)
    : TModuleHold(GetAncestor(mdiClient, GA_ROOT)),
      TElicomPluScaleListForm(ModuleConfigurationFile(HostExecutable()),
                              HostSettingsFile(HostExecutable())) {
    Open(mdiClient);
}

void TModuleListForm::OpenRun(TRunNumber number) {
    ShowRunWindow(Handle(), number,
                  {Session().KeepArticles(), Grid().MarkedRows(), Grid().CurrentRow(),
                   &Store().Scales(), Store().File()});
}

void TModuleListForm::EditScales() {
    if (ShowScaleList(Handle(), Store().Scales())) Store().SaveScales();
}

void TModuleListForm::Print(std::string_view title, std::string_view dateTime, HWND grid) {
    const TPrintProc print = ModuleState().printProc;
    if (print.Code == nullptr) return;
    if (!CanRead(reinterpret_cast<const void*>(print.Code), 1))
        throw std::runtime_error(std::string(kNoPrintService));
    const TCountedText countedTitle = Counted(title);
    const TCountedText countedTime = Counted(dateTime);
    print.Code(print.Object, countedTitle.data(), countedTime.data(), grid);
}

void TModuleListForm::Ended() {
    PostCompletion();
}

}  // namespace tolvane

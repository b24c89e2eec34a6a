#include "tests/support/module/LoadedModule.h"

#include <array>
#include <stdexcept>

namespace tolvane::test {
namespace {

template <class Function>
void Find(HMODULE module, const char* name, Function& function) {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    if (function == nullptr) throw std::runtime_error(std::string("no export ") + name);
}

}  // namespace

std::wstring BesideProgram(const std::wstring& name) {
    std::array<wchar_t, MAX_PATH> program{};
    GetModuleFileNameW(nullptr, program.data(), MAX_PATH);
    std::wstring path = program.data();
    path.resize(path.rfind(L'\\') + 1);
    return path + name;
}

std::wstring TLoadedModule::Path() {
    return BesideProgram(L"Operations\\Tolvane.dll");
}

TLoadedModule::TLoadedModule() : module_(LoadLibraryW(Path().c_str())) {
    if (module_ == nullptr) throw std::runtime_error("Tolvane.dll does not load");
    Find(module_, "GetOperationTitle", GetTitle);
    Find(module_, "GetOperationType", GetType);
    Find(module_, "SetTQ4ModuleString", SetModuleString);
    Find(module_, "OperationProcedure", Start);
}

void TLoadedModule::Unload() {
    if (module_ != nullptr) FreeLibrary(module_);
    module_ = nullptr;
}

TLoadedModule::~TLoadedModule() {
    Unload();
}

}  // namespace tolvane::test

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "tests/support/module/LoadedModule.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/HostFrame.h"

namespace tolvane::test {
namespace {

const std::uint8_t* Image(HMODULE module) {
    return reinterpret_cast<const std::uint8_t*>(module);
}

const IMAGE_DATA_DIRECTORY& Directory(HMODULE module, int index) {
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(Image(module));
    const auto* headers =
        reinterpret_cast<const IMAGE_NT_HEADERS32*>(Image(module) + dos->e_lfanew);
    return headers->OptionalHeader.DataDirectory[index];
}

std::vector<std::string> ExportNames(HMODULE module) {
    const auto* exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(
        Image(module) + Directory(module, IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress);
    const auto* names = reinterpret_cast<const DWORD*>(Image(module) + exports->AddressOfNames);
    std::vector<std::string> result;
    for (DWORD i = 0; i < exports->NumberOfNames; ++i)
        result.emplace_back(reinterpret_cast<const char*>(Image(module) + names[i]));
    return result;
}

std::vector<std::string> ImportedLibraries(HMODULE module) {
    const auto* entry = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(
        Image(module) + Directory(module, IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress);
    std::vector<std::string> result;
    for (; entry->Name != 0; ++entry) {
        std::string name(reinterpret_cast<const char*>(Image(module) + entry->Name));
        std::transform(name.begin(), name.end(), name.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        result.push_back(name);
    }
    return result;
}

template <class Value>
Value At(const char* text, int offset) {
    Value value{};
    std::memcpy(&value, text + offset, sizeof value);
    return value;
}

void ExpectConstantText(const char* text, const std::string& characters) {
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(At<std::int32_t>(text, -4), static_cast<std::int32_t>(characters.size()));
    EXPECT_EQ(At<std::int32_t>(text, -8), -1);
    EXPECT_EQ(At<std::uint16_t>(text, -10), 1);
    EXPECT_EQ(At<std::uint16_t>(text, -12), 1251);
    EXPECT_EQ(std::string(text), characters);
}

// "Програмиране на везни ELICOM EVL/ETS" in code page 1251.
const std::string kTitle =
    "\xCF\xF0\xEE\xE3\xF0\xE0\xEC\xE8\xF0\xE0\xED\xE5 \xED\xE0 \xE2\xE5\xE7\xED\xE8 ELICOM EVL/ETS";

// Calls a function with `slots` zero arguments. Returns how many bytes it has removed from the
// stack.
__attribute__((noinline)) int BytesRemoved(void* function, int slots) {
    int removed = 0;
    asm volatile(
        "movl %%esp, %%esi\n\t"
        "1: testl %%ebx, %%ebx\n\t"
        "jz 2f\n\t"
        "pushl $0\n\t"
        "decl %%ebx\n\t"
        "jmp 1b\n\t"
        "2: movl %%esp, %%edi\n\t"
        "call *%%eax\n\t"
        "movl %%esp, %%eax\n\t"
        "subl %%edi, %%eax\n\t"
        "movl %%esi, %%esp\n\t"
        : "=a"(removed), "+b"(slots)
        : "a"(function)
        : "ecx", "edx", "esi", "edi", "memory", "cc");
    return removed;
}

void* Entry(const TLoadedModule& module, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(module.Handle(), name));
}

}  // namespace

TEST(Exports, AreExactlyFourUndecoratedNames) {
    const TLoadedModule module;
    const std::vector<std::string> expected = {"GetOperationTitle", "GetOperationType",
                                               "OperationProcedure", "SetTQ4ModuleString"};
    EXPECT_EQ(ExportNames(module.Handle()), expected);
}

TEST(Exports, ModuleImportsSystemLibrariesOnly) {
    const TLoadedModule module;
    const std::set<std::string> system = {
        "kernel32.dll", "user32.dll",  "gdi32.dll",  "comctl32.dll", "advapi32.dll", "ws2_32.dll",
        "mswsock.dll",  "shell32.dll", "msvcrt.dll", "ole32.dll",    "iphlpapi.dll"};
    const std::vector<std::string> imported = ImportedLibraries(module.Handle());
    EXPECT_FALSE(imported.empty());
    for (const std::string& name : imported)
        EXPECT_EQ(system.count(name), 1U) << name;
}

TEST(Exports, CalleeRemovesItsArguments) {
    const TLoadedModule module;
    const TBoxAnswerer answerer;  // an operation that was started with nulls reports its failure
    EXPECT_EQ(BytesRemoved(Entry(module, "GetOperationTitle"), 1), 4);
    EXPECT_EQ(BytesRemoved(Entry(module, "GetOperationType"), 1), 4);
    EXPECT_EQ(BytesRemoved(Entry(module, "SetTQ4ModuleString"), 2), 8);
    EXPECT_EQ(BytesRemoved(Entry(module, "OperationProcedure"), 8), 32);
}

TEST(GetOperationTitle, StoresAConstantTextOfCodePage1251) {
    const TLoadedModule module;
    const char* text = nullptr;
    module.GetTitle(&text);
    ExpectConstantText(text, kTitle);
}

TEST(GetOperationTitle, AnswersTheSameBlockEachTime) {
    const TLoadedModule module;
    const char* first = nullptr;
    const char* second = nullptr;
    module.GetTitle(&first);
    module.GetTitle(&second);
    EXPECT_EQ(first, second);
}

TEST(GetOperationTitle, TextOutlivesTheModule) {
    const char* text = nullptr;
    TLoadedModule module;
    module.GetTitle(&text);
    module.Unload();
    ASSERT_TRUE(RunLoopUntil([] { return !TLoadedModule::IsInMemory(); }));
    ExpectConstantText(text, kTitle);
}

TEST(GetOperationType, StoresOperation) {
    const TLoadedModule module;
    const char* text = nullptr;
    module.GetType(&text);
    ExpectConstantText(text, "Operation");
}

TEST(SetTQ4ModuleString, TakesATextAndLeavesItAsItIs) {
    const TLoadedModule module;
    struct {
        std::int32_t count = 3;
        std::int32_t length = 4;
        char characters[5] = {'a', 'b', 'c', 'd', 0};
    } text;
    module.SetModuleString(text.characters, -7);
    EXPECT_EQ(text.count, 3);
    EXPECT_EQ(text.length, 4);
    EXPECT_EQ(std::string(text.characters), "abcd");
}

TEST(SetTQ4ModuleString, TakesTheEmptyText) {
    const TLoadedModule module;
    module.SetModuleString(nullptr, 0);
    const char* text = nullptr;
    module.GetType(&text);  // the module still answers
    EXPECT_EQ(std::string(text), "Operation");
}

TEST(Exports, NullResultCellsAreLeftAlone) {
    const TLoadedModule module;
    module.GetTitle(nullptr);
    module.GetType(nullptr);
    const char* text = nullptr;
    module.GetType(&text);
    EXPECT_EQ(std::string(text), "Operation");
}

}  // namespace tolvane::test

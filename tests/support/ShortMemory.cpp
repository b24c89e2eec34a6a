#include "tests/support/ShortMemory.h"

#include <cstdlib>
#include <new>

namespace tolvane::test {
namespace {

struct TAllocations {
    bool counted = false;
    int count = 0;
    int failing = 0;
    bool forGood = false;
};

thread_local TAllocations memoryState;

bool Fails() {
    if (!memoryState.counted) return false;
    ++memoryState.count;
    if (memoryState.failing == 0) return false;
    return memoryState.forGood ? memoryState.count >= memoryState.failing
                               : memoryState.count == memoryState.failing;
}

}  // namespace

TShortMemory::TShortMemory(int n, THowLong howLong) {
    memoryState = {.counted = true, .count = 0, .failing = n, .forGood = howLong == ForGood};
}

TShortMemory::~TShortMemory() {
    memoryState = {};
}

int TShortMemory::Count() {
    return memoryState.count;
}

TEnoughMemory::TEnoughMemory() : before_(memoryState.counted) {
    memoryState.counted = false;
}

TEnoughMemory::~TEnoughMemory() {
    memoryState.counted = before_;
}

}  // namespace tolvane::test

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return tolvane::test::Fails() ? nullptr : std::malloc(size != 0 ? size : 1);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return operator new(size, std::nothrow);
}
void* operator new(std::size_t size) {
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

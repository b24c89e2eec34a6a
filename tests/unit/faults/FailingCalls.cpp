#include "tests/unit/faults/FailingCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace tolvane::test {
namespace {

struct TCalls {
    bool counted = false;
    int failing = 0;
    bool forGood = false;
    int count = 0;
    std::array<const char*, 256> names{};
};

thread_local TCalls callState;
thread_local std::size_t mostToWrite = 0;
thread_local int openDescriptors = 0;

}  // namespace

TFailingCalls::TFailingCalls(int n, THowLong howLong) {
    callState = {.counted = true, .failing = n, .forGood = howLong == ForGood};
}

TFailingCalls::~TFailingCalls() {
    callState.counted = false;
}

std::vector<std::string> TFailingCalls::Calls() {
    const auto count =
        std::min<std::size_t>(static_cast<std::size_t>(callState.count), callState.names.size());
    return {callState.names.begin(), callState.names.begin() + static_cast<std::ptrdiff_t>(count)};
}

void TFailingCalls::LimitWrites(std::size_t bytes) {
    mostToWrite = bytes;
}

bool CallFails(const char* name) {
    if (!callState.counted) return false;
    if (static_cast<std::size_t>(callState.count) < callState.names.size())
        callState.names[static_cast<std::size_t>(callState.count)] = name;
    ++callState.count;
    if (callState.failing == 0) return false;
    const bool fails = callState.forGood ? callState.count >= callState.failing
                                         : callState.count == callState.failing;
    if (fails) errno = EIO;
    return fails;
}

int& OpenDescriptors() {
    return openDescriptors;
}

std::size_t MostToWrite(std::size_t bytes) {
    return mostToWrite != 0 ? std::min(bytes, mostToWrite) : bytes;
}

}  // namespace tolvane::test

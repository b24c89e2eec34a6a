#include <windows.h>

#include <cstdint>
#include <ratio>

#include "tests/support/RealTime.h"

namespace tolvane::test {
namespace {

using TFileTime = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

TFileTime Duration(const FILETIME& time) {
    return TFileTime((std::int64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime);
}

}  // namespace

TMilliseconds ThreadTime() {
    FILETIME created{};
    FILETIME exited{};
    FILETIME kernel{};
    FILETIME user{};
    GetThreadTimes(GetCurrentThread(), &created, &exited, &kernel, &user);
    return std::chrono::duration_cast<TMilliseconds>(Duration(kernel) + Duration(user));
}

}  // namespace tolvane::test

#include <time.h>

#include "tests/support/RealTime.h"

namespace tolvane::test {

TMilliseconds ThreadTime() {
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return std::chrono::duration_cast<TMilliseconds>(std::chrono::seconds(used.tv_sec) +
                                                     std::chrono::nanoseconds(used.tv_nsec));
}

}  // namespace tolvane::test

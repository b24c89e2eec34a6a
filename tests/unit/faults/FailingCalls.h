#pragma once

#include <string>
#include <vector>

namespace tolvane::test {

// Lets calls of this thread to the system fail, for as long as the object lives: those that the
// program is linked with --wrap for. A failing call does nothing, and reports EIO.
class TFailingCalls {
public:
    enum THowLong { Once, ForGood };

    // The n-th call fails, counted from 1 on, or all from it on; none for 0.
    TFailingCalls(int n, THowLong howLong);
    TFailingCalls(const TFailingCalls&) = delete;
    TFailingCalls& operator=(const TFailingCalls&) = delete;
    ~TFailingCalls();

    // The calls so far, by name.
    static std::vector<std::string> Calls();

    // Most bytes that a write takes at a time; 0 for all.
    static void LimitWrites(std::size_t bytes);
};

// For the wrapped functions: counts the call; whether it is to fail, with errno set.
bool CallFails(const char* name);
std::size_t MostToWrite(std::size_t bytes);
// The descriptors that this thread has opened and not closed, as far as the functions count them.
int& OpenDescriptors();

}  // namespace tolvane::test

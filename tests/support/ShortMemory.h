#pragma once

namespace tolvane::test {

// Lets allocations of this thread fail, for as long as the object lives. The program's operators
// new are replaced for it.
class TShortMemory {
public:
    enum THowLong { Once, ForGood };

    // The n-th allocation fails, counted from 1 on, or all from it on; none for 0.
    TShortMemory(int n, THowLong howLong);
    TShortMemory(const TShortMemory&) = delete;
    TShortMemory& operator=(const TShortMemory&) = delete;
    ~TShortMemory();

    // Allocations so far.
    static int Count();
};

// Lets no allocation fail, and counts none: of what stands for the system, and of the test itself.
class TEnoughMemory {
public:
    TEnoughMemory();
    TEnoughMemory(const TEnoughMemory&) = delete;
    TEnoughMemory& operator=(const TEnoughMemory&) = delete;
    ~TEnoughMemory();

private:
    bool before_;
};

}  // namespace tolvane::test

#pragma once

namespace tolvane {

// Keeps the system's socket library ready while it lives; counted by the system, so channels hold
// one each. Throws std::system_error when there is none.
class TSocketLibrary {
public:
    TSocketLibrary();
    // NOLINTNEXTLINE(performance-trivially-destructible): one system has something to do here.
    ~TSocketLibrary();
    TSocketLibrary(const TSocketLibrary&) = delete;
    TSocketLibrary& operator=(const TSocketLibrary&) = delete;
};

}  // namespace tolvane

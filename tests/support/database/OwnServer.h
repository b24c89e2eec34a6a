#pragma once

#include <sys/types.h>

#include <atomic>
#include <filesystem>
#include <string>

#include "tests/support/ScratchFolder.h"

namespace tolvane::test {

// A Firebird server of the test's own, which may die without harm to others (Linux). Its program,
// users and passwords are those of the private server whose folder TOLVANE_FB_ROOT names; it ends
// with the thread that has made it. One in a process.
class TOwnServer {
public:
    // Starts it. Throws std::runtime_error when it does not start.
    TOwnServer();
    TOwnServer(const TOwnServer&) = delete;
    TOwnServer& operator=(const TOwnServer&) = delete;
    ~TOwnServer();

    // host/port, the same after each start.
    std::string Address() const;
    // Does nothing when it runs. Returns when it accepts connections.
    void Start();
    // SIGKILL; returns when the process has gone. Any thread, one at a time.
    void Kill();
    bool IsRunning() const { return process_ != 0; }

private:
    void MakeFolder() const;
    void WaitUntilItListens() const;

    TScratchFolder folder_;
    std::string host_;
    std::atomic<pid_t> process_ = 0;
};

}  // namespace tolvane::test

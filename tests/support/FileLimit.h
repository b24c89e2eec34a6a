#pragma once

#include <sys/resource.h>

#include <csignal>

namespace tolvane::test {

// No file of this program grows beyond a limit for as long as this lives, as on a disk that fills
// up.
class TFileLimit {
public:
    explicit TFileLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    TFileLimit(const TFileLimit&) = delete;
    TFileLimit& operator=(const TFileLimit&) = delete;
    ~TFileLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit before_{};
    void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

}  // namespace tolvane::test

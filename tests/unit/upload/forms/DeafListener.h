#pragma once

#include <cstdint>
#include <memory>

namespace tolvane::test {

// A port of this machine that never answers a connection: connections that nobody accepts fill its
// backlog, so that the system drops every further attempt. Throws std::runtime_error.
class TDeafListener {
public:
    TDeafListener();
    TDeafListener(const TDeafListener&) = delete;
    TDeafListener& operator=(const TDeafListener&) = delete;
    ~TDeafListener();

    std::uint16_t Port() const;

private:
    struct TSockets;
    std::unique_ptr<TSockets> sockets_;
};

}  // namespace tolvane::test

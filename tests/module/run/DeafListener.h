#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

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

    // From now on the system accepts connections, also those that it has dropped so far when they
    // are tried again (about a second after the first attempt).
    void Hear();
    // After Hear: waits until the other ends of all connections are closed. Returns how many bytes
    // they have sent, or nothing when there was no connection.
    std::optional<std::size_t> BytesReceived();

private:
    struct TSockets;
    std::unique_ptr<TSockets> sockets_;
};

}  // namespace tolvane::test

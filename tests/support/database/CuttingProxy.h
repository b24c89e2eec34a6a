#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace tolvane::test {

// Passes everything on between one client and a server until a moment that the test chooses; then
// it cuts both connections, or keeps them and passes nothing on, as a network does that loses
// packets. It works on a thread of its own; its functions are for the test's thread.
class TCuttingProxy {
public:
    // `server`: host/port with a dotted host.
    explicit TCuttingProxy(const std::string& server);
    TCuttingProxy(const TCuttingProxy&) = delete;
    TCuttingProxy& operator=(const TCuttingProxy&) = delete;
    ~TCuttingProxy();

    // host/port for the client.
    std::string Address() const;
    // Cuts when the server has sent more than this many bytes from now on.
    void CutAfter(std::size_t serverBytes);
    // Passes the server's next answer on, and then cuts.
    void CutAfterNextAnswer();
    // Cuts now.
    void CutNow();
    // Calls `action` once, on the proxy's thread, before it passes on what the client sends as the
    // n-th piece from now on, counted from 1.
    void BeforePiece(int number, std::function<void()> action);
    // Passes nothing on from that piece on, in either direction; 1 is the next one.
    void SwallowFromPiece(int number);
    bool HasCut() const;
    bool Swallows() const;

private:
    struct TEnds;
    std::unique_ptr<TEnds> ends_;
};

}  // namespace tolvane::test

#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace tolvane::test {

// Passes everything on between one client and a server, and cuts both connections at a moment that
// the test chooses. It works on a thread of its own; its functions are for the test's thread.
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
    bool HasCut() const;

private:
    struct TEnds;
    std::unique_ptr<TEnds> ends_;
};

}  // namespace tolvane::test

#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <thread>

namespace tolvane::test {

// Stands between one client and the server, and cuts both connections when it has passed on the
// given number of the server's bytes since Arm.
class TCuttingProxy {
public:
    // `server`: host/port with a dotted host.
    explicit TCuttingProxy(const std::string& server);
    TCuttingProxy(const TCuttingProxy&) = delete;
    TCuttingProxy& operator=(const TCuttingProxy&) = delete;
    ~TCuttingProxy();

    // host/port for the client.
    const std::string& Address() const { return address_; }
    void Arm(std::size_t serverBytes) { bytesLeft_ = static_cast<long>(serverBytes); }
    bool HasCut() const { return cut_; }

private:
    void Serve();
    void PassOn(int client, int server);

    std::string host_;
    int port_ = 0;
    std::string address_;
    int listener_ = -1;
    std::atomic<bool> stop_ = false;
    std::atomic<bool> cut_ = false;
    std::atomic<long> bytesLeft_ = -1;  // below 0: not armed
    std::thread thread_;
};

}  // namespace tolvane::test

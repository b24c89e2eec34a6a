#include "tests/integration/articles/CuttingProxy.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <stdexcept>

namespace tolvane::test {
namespace {

constexpr int kPollMilliseconds = 50;

sockaddr_in SocketAddress(const std::string& host, int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    inet_pton(AF_INET, host.c_str(), &address.sin_addr);
    return address;
}

void Require(bool good, const char* what) {
    if (!good) throw std::runtime_error(std::string("proxy: ") + what);
}

bool WriteAll(int to, const char* data, ssize_t size) {
    while (size > 0) {
        const ssize_t written = send(to, data, static_cast<std::size_t>(size), MSG_NOSIGNAL);
        if (written <= 0) return false;
        data += written;
        size -= written;
    }
    return true;
}

}  // namespace

TCuttingProxy::TCuttingProxy(const std::string& server) {
    const std::size_t slash = server.find('/');
    host_ = server.substr(0, slash);
    port_ = std::stoi(server.substr(slash + 1));
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in own = SocketAddress("127.0.0.1", 0);
    Require(bind(listener_, reinterpret_cast<sockaddr*>(&own), sizeof(own)) == 0, "bind");
    Require(listen(listener_, 1) == 0, "listen");
    socklen_t size = sizeof(own);
    getsockname(listener_, reinterpret_cast<sockaddr*>(&own), &size);
    address_ = "127.0.0.1/" + std::to_string(ntohs(own.sin_port));
    thread_ = std::thread([this] { Serve(); });
}

TCuttingProxy::~TCuttingProxy() {
    stop_ = true;
    thread_.join();
    close(listener_);
}

void TCuttingProxy::Serve() {
    pollfd waiting{listener_, POLLIN, 0};
    while (!stop_) {
        if (poll(&waiting, 1, kPollMilliseconds) <= 0) continue;
        const int client = accept(listener_, nullptr, nullptr);
        const int server = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address = SocketAddress(host_, port_);
        if (connect(server, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0)
            PassOn(client, server);
        close(server);
        close(client);
    }
}

void TCuttingProxy::PassOn(int client, int server) {
    std::array<pollfd, 2> ends = {pollfd{client, POLLIN, 0}, pollfd{server, POLLIN, 0}};
    std::array<char, 4096> buffer{};
    while (!stop_) {
        if (poll(ends.data(), ends.size(), kPollMilliseconds) <= 0) continue;
        for (std::size_t i = 0; i < ends.size(); ++i) {
            if (ends[i].revents == 0) continue;
            const ssize_t size = recv(ends[i].fd, buffer.data(), buffer.size(), 0);
            if (size <= 0) return;
            const bool fromServer = i == 1;
            if (fromServer && bytesLeft_ >= 0 && (bytesLeft_ -= size) < 0) {
                cut_ = true;
                return;
            }
            if (!WriteAll(ends[1 - i].fd, buffer.data(), size)) return;
        }
    }
}

}  // namespace tolvane::test

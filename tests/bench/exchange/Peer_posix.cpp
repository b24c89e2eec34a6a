#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <span>
#include <system_error>
#include <thread>

#include "tests/bench/exchange/Peer.h"

namespace tolvane::bench {
namespace {

constexpr std::uint8_t kRequestEnd = 0x03;
constexpr long kNanosecondsPerByte = 10L * 1'000'000'000 / 115200;
constexpr long kNanosecondsPerSecond = 1'000'000'000;

int Check(int result, const char* what) {
    if (result < 0) throw std::system_error(errno, std::system_category(), what);
    return result;
}

std::uint16_t BindToLoopback(int socket) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    Check(bind(socket, plain, size), "bind");
    Check(getsockname(socket, plain, &size), "getsockname");
    return ntohs(address.sin_port);
}

// The peer's end of a pseudo terminal in raw mode. The other end is kept open: the terminal would
// otherwise hang up whenever a client closes it.
int OpenTerminal(std::string& device) {
    const int peer = Check(posix_openpt(O_RDWR | O_NOCTTY), "posix_openpt");
    Check(grantpt(peer), "grantpt");
    Check(unlockpt(peer), "unlockpt");
    std::array<char, 256> name{};
    Check(ptsname_r(peer, name.data(), name.size()), "ptsname");
    device = name.data();
    const int client = Check(open(name.data(), O_RDWR | O_NOCTTY), name.data());
    termios settings{};
    Check(tcgetattr(client, &settings), "tcgetattr");
    cfmakeraw(&settings);
    Check(tcsetattr(client, TCSANOW, &settings), "tcsetattr");
    return peer;
}

void AnswerTcp(int connection) {
    std::array<std::uint8_t, 1024> received{};
    for (;;) {
        const ssize_t count = recv(connection, received.data(), received.size(), 0);
        if (count <= 0) break;
        if (received[static_cast<std::size_t>(count) - 1] != kRequestEnd) continue;
        if (send(connection, kPeerReply, sizeof kPeerReply, MSG_NOSIGNAL) < 0) break;
    }
    close(connection);
}

void ServeTcp(int listener) {
    for (;;) {
        const int connection = accept(listener, nullptr, nullptr);
        if (connection < 0) return;
        const int on = 1;
        setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        std::thread(AnswerTcp, connection).detach();
    }
}

void ServeUdp(int socket) {
    std::array<std::uint8_t, 1024> received{};
    for (;;) {
        sockaddr_in client{};
        socklen_t size = sizeof client;
        auto* const plain = reinterpret_cast<sockaddr*>(&client);
        if (recvfrom(socket, received.data(), received.size(), 0, plain, &size) <= 0) continue;
        sendto(socket, kPeerReply, sizeof kPeerReply, 0, plain, size);
    }
}

timespec After(timespec start, long nanoseconds) {
    start.tv_nsec += nanoseconds;
    start.tv_sec += start.tv_nsec / kNanosecondsPerSecond;
    start.tv_nsec %= kNanosecondsPerSecond;
    return start;
}

// Each byte of the reply when the line would have brought it.
void AnswerSerial(int terminal, timespec start, std::size_t bytesBefore) {
    for (const std::uint8_t byte : kPeerReply) {
        const timespec due = After(start, static_cast<long>(++bytesBefore) * kNanosecondsPerByte);
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &due, nullptr);
        if (write(terminal, &byte, 1) != 1) return;
    }
}

void ServeSerial(int terminal) {
    prctl(PR_SET_TIMERSLACK, 1);
    std::array<std::uint8_t, 1024> received{};
    std::size_t total = 0;
    timespec start{};
    for (;;) {
        const ssize_t count = read(terminal, received.data(), received.size());
        if (count <= 0) return;
        if (total == 0) clock_gettime(CLOCK_MONOTONIC, &start);
        total += static_cast<std::size_t>(count);
        if (received[static_cast<std::size_t>(count) - 1] != kRequestEnd) continue;
        AnswerSerial(terminal, start, total);
        total = 0;
    }
}

[[noreturn]] void Serve(int tcp, int udp, int terminal) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::thread(ServeTcp, tcp).detach();
    std::thread(ServeUdp, udp).detach();
    std::thread(ServeSerial, terminal).detach();
    for (;;)
        pause();
}

}  // namespace

TPeer::TPeer() {
    const int tcp = Check(socket(AF_INET, SOCK_STREAM, 0), "socket");
    place_.tcpPort = BindToLoopback(tcp);
    Check(listen(tcp, SOMAXCONN), "listen");
    const int udp = Check(socket(AF_INET, SOCK_DGRAM, 0), "socket");
    place_.udpPort = BindToLoopback(udp);
    const int terminal = OpenTerminal(place_.serialPort);
    process_ = Check(fork(), "fork");
    if (process_ == 0) Serve(tcp, udp, terminal);
    for (const int each : {tcp, udp, terminal})
        close(each);
}

TPeer::~TPeer() {
    kill(process_, SIGKILL);
    Wait();
}

void TPeer::Wait() {
    waitpid(process_, nullptr, 0);
}

}  // namespace tolvane::bench

#include "tests/support/database/OwnServer.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "tests/support/Environment.h"
#include "tests/support/OwnAddress_posix.h"

namespace tolvane::test {
namespace {

using asio::ip::tcp;

constexpr const char* kServerProgram = "/usr/sbin/firebird";
constexpr std::chrono::seconds kLongestStart{30};
constexpr std::chrono::milliseconds kStartPoll{10};

// Below those that a system gives to who asks for none.
constexpr std::uint16_t kServerPort = 13050;

// Nobody can take the port there while the server is dead.
asio::ip::address_v4 ServerAddress() {
    return OwnAddress(0);
}

// Replaces this process, a child, by the server. With the port as an argument the server would
// listen on every address, whatever its settings say.
[[noreturn]] void BecomeServer(const std::string& folder) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int null = open("/dev/null", O_RDWR);
    for (int descriptor = 0; descriptor < 3; ++descriptor)
        dup2(null, descriptor);
    const std::string root = "FIREBIRD=" + folder;
    const std::string lock = "FIREBIRD_LOCK=" + folder + "/lock";
    const std::string temporary = "FIREBIRD_TMP=" + folder + "/lock";
    execle(kServerProgram, kServerProgram, nullptr,
           std::array<const char*, 5>{"PATH=/usr/bin:/bin", root.c_str(), lock.c_str(),
                                      temporary.c_str(), nullptr}
               .data());
    _exit(127);
}

}  // namespace

TOwnServer::TOwnServer() : host_(ServerAddress().to_string()) {
    MakeFolder();
    Start();
}

TOwnServer::~TOwnServer() {
    Kill();
}

std::string TOwnServer::Address() const {
    return host_ + "/" + std::to_string(kServerPort);
}

// Links to the system's programs, as the private server has them, and settings of its own.
void TOwnServer::MakeFolder() const {
    const std::filesystem::path root = Environment("TOLVANE_FB_ROOT");
    for (const auto& entry : std::filesystem::directory_iterator(root))
        if (entry.is_symlink() || entry.path().filename() == "intl")
            std::filesystem::copy(entry.path(), folder_ / entry.path().filename(),
                                  std::filesystem::copy_options::recursive |
                                      std::filesystem::copy_options::copy_symlinks);
    const std::string users = (folder_ / "security3.fdb").string();
    std::filesystem::copy_file(root / "security3.fdb", users);
    std::filesystem::create_directory(folder_ / "lock");
    PutFile(folder_ / "databases.conf", "security.db = " + users + "\n");
    PutFile(folder_ / "firebird.conf",
            "RemoteServicePort = " + std::to_string(kServerPort) +
                "\nRemoteBindAddress = " + host_ + "\nIpcName = own_" + std::to_string(getpid()) +
                "\nDatabaseAccess = Full\nSecurityDatabase = " + users +
                "\nAuthServer = Srp\nAuthClient = Srp\nUserManager = Srp\nWireCrypt = Enabled\n"
                "ServerMode = Super\n");
}

void TOwnServer::Start() {
    if (process_ != 0) return;
    const std::string folder = folder_.Path().string();
    const pid_t process = fork();
    if (process == 0) BecomeServer(folder);
    if (process < 0) throw std::runtime_error("no process for the test's own Firebird server");
    process_ = process;
    WaitUntilItListens();
}

void TOwnServer::WaitUntilItListens() const {
    const auto end = std::chrono::steady_clock::now() + kLongestStart;
    asio::io_context io;
    while (std::chrono::steady_clock::now() < end) {
        std::error_code error;
        tcp::socket(io).connect({ServerAddress(), kServerPort}, error);
        if (!error) return;
        std::this_thread::sleep_for(kStartPoll);
    }
    throw std::runtime_error("the test's own Firebird server did not start");
}

void TOwnServer::Kill() {
    const pid_t process = process_;
    if (process <= 0) return;
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    process_ = 0;
}

}  // namespace tolvane::test

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <asio/posix/stream_descriptor.hpp>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "simulator/StreamLink.h"
#include "simulator/Transport.h"

namespace tolvane::simulator {

namespace {

void Check(bool succeeded, const char* what) {
    if (!succeeded) throw std::system_error(errno, std::generic_category(), what);
}

class TDescriptor {
public:
    explicit TDescriptor(int number) : number_(number) {}
    ~TDescriptor() { Close(); }
    TDescriptor(TDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    TDescriptor& operator=(TDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    int Number() const { return number_; }
    int Release() { return std::exchange(number_, -1); }
    void Close() {
        if (number_ >= 0) ::close(std::exchange(number_, -1));
    }

private:
    int number_;
};

// Both ends of a pseudo terminal in raw mode.
struct TPty {
    TDescriptor scale;
    TDescriptor client;
    std::string device;
};

TPty OpenPty() {
    TDescriptor scale(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    Check(scale.Number() >= 0, "posix_openpt");
    Check(::grantpt(scale.Number()) == 0, "grantpt");
    Check(::unlockpt(scale.Number()) == 0, "unlockpt");
    std::array<char, 256> name{};
    Check(::ptsname_r(scale.Number(), name.data(), name.size()) == 0, "ptsname");
    TDescriptor client(::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    Check(client.Number() >= 0, name.data());
    termios settings{};
    Check(::tcgetattr(client.Number(), &settings) == 0, "tcgetattr");
    ::cfmakeraw(&settings);
    Check(::tcsetattr(client.Number(), TCSANOW, &settings) == 0, "tcsetattr");
    return {std::move(scale), std::move(client), name.data()};
}

// The client's end is kept open here as well: otherwise the terminal would hang up each time that
// a client closes it.
class TPtyLink : public TStreamLink<asio::posix::stream_descriptor> {
public:
    TPtyLink(asio::io_context& io, TPty pty, TAnswer answer)
        : TStreamLink(asio::posix::stream_descriptor(io, pty.scale.Release()), std::move(answer)),
          client_(std::move(pty.client)) {}

    void Close() {
        std::error_code ignored;
        client_.Close();
        Stream().close(ignored);
    }

protected:
    // The port vanishes, for the client as well.
    void End(TEnding) override { Close(); }

private:
    TDescriptor client_;
};

class TPtyTransport : public TTransport {
public:
    TPtyTransport(std::shared_ptr<TPtyLink> link, std::string device, std::string linkPath)
        : link_(std::move(link)), device_(std::move(device)), linkPath_(std::move(linkPath)) {
        if (linkPath_.empty()) return;
        const std::string temporary = linkPath_ + ".new";
        std::filesystem::remove(temporary);
        std::filesystem::create_symlink(device_, temporary);
        std::filesystem::rename(temporary, linkPath_);
    }
    ~TPtyTransport() override {
        std::error_code ignored;
        if (!linkPath_.empty()) std::filesystem::remove(linkPath_, ignored);
    }
    void Close() override { link_->Close(); }
    std::string Endpoint() const override { return "serial " + Device(); }
    std::string Device() const override { return linkPath_.empty() ? device_ : linkPath_; }

private:
    std::shared_ptr<TPtyLink> link_;
    std::string device_;
    std::string linkPath_;
};

}  // namespace

std::shared_ptr<TTransport> ListenPty(asio::io_context& io, const std::string& link,
                                      TAnswer answer) {
    TPty pty = OpenPty();
    const std::string device = pty.device;
    const auto reader = std::make_shared<TPtyLink>(io, std::move(pty), std::move(answer));
    reader->Read();
    return std::make_shared<TPtyTransport>(reader, device, link);
}

}  // namespace tolvane::simulator

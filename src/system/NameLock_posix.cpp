#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string>
#include <system_error>

#include "system/NameLock.h"

namespace tolvane {
namespace {

constexpr std::string_view kPrefix = "tolvane/";
constexpr std::size_t kLongestName = 90;

}  // namespace

// A socket with an abstract name: there is no file that another user may not open, or that stays.
std::optional<TNameLock> TNameLock::TryHold(std::string_view name) {
    const std::string text =
        std::string(kPrefix).append(name.substr(name.size() - std::min(name.size(), kLongestName)));
    sockaddr_un address{};
    static_assert(kPrefix.size() + kLongestName < sizeof(address.sun_path));
    address.sun_family = AF_UNIX;
    // The first byte stays zero: that is what makes the name abstract.
    std::copy(text.begin(), text.end(), address.sun_path + 1);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) throw std::system_error(errno, std::system_category());
    if (bind(descriptor, reinterpret_cast<const sockaddr*>(&address), length) == 0)
        return TNameLock(descriptor);
    const int error = errno;
    close(descriptor);
    if (error != EADDRINUSE) throw std::system_error(error, std::system_category());
    return std::nullopt;
}

void TNameLock::Release() noexcept {
    if (handle_ != -1) close(static_cast<int>(handle_));
    handle_ = -1;
}

}  // namespace tolvane

// Linked into a module (DLL) beside this library. The socket library's own global objects start the
// system's sockets when they are constructed, which a module must not do while it is being loaded.
// This object is constructed first and prevents that; TSocketLibrary starts the sockets later.
#include <asio/detail/winsock_init.hpp>

namespace {

__attribute__((init_priority(101), used)) const asio::detail::winsock_init<>::manual kStartedByHand;

}  // namespace

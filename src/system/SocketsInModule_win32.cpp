// Linked into a module (DLL) beside this library. The socket library's own global objects start the
// system's sockets when they are constructed, which a module must not do while it is being loaded;
// this object, constructed before them, keeps them from it. TSocketLibrary starts the sockets then.
#include <asio/detail/winsock_init.hpp>

namespace {

__attribute__((init_priority(101), used)) const asio::detail::winsock_init<>::manual kStartedByHand;

}  // namespace

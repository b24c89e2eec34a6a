#include "comm/UdpOptions.h"

namespace tolvane {

// A socket that is not connected to one peer does not hear of them here.
void IgnoreUnreachablePeers(std::uintptr_t /*socket*/) {}

}  // namespace tolvane

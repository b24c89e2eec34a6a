#pragma once

#include <cstdint>

namespace tolvane {

// Keeps "port unreachable" answers to earlier datagrams from ending a receive, where the system
// would let them.
void IgnoreUnreachablePeers(std::uintptr_t socket);

}  // namespace tolvane

#include "comm/SocketLibrary.h"

namespace tolvane {

TSocketLibrary::TSocketLibrary() = default;
TSocketLibrary::~TSocketLibrary() = default;

}  // namespace tolvane

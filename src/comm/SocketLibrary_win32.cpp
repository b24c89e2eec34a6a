#include "comm/SocketLibrary.h"

#include <winsock2.h>

#include <system_error>

namespace tolvane {

TSocketLibrary::TSocketLibrary() {
    WSADATA data{};
    const int failure = WSAStartup(MAKEWORD(2, 2), &data);
    if (failure != 0) throw std::system_error(failure, std::system_category());
}

TSocketLibrary::~TSocketLibrary() {
    WSACleanup();
}

}  // namespace tolvane

#include "comm/SocketChannel.h"

#include <exception>

#include "comm/SocketSupport.h"
#include "system/SystemError.h"

namespace tolvane {
namespace {

constexpr const char* kSocketTimeoutText = "Read timeout occured";

}  // namespace

std::string TSocketChannel::GetDescription() const {
    return protocol_ + " (" + host_ + ":" + std::to_string(port_) + ")";
}

bool TSocketChannel::Open() {
    Close();
    try {
        OpenSocket();
        return true;
    } catch (const std::exception& failure) {
        Close();
        return Fail("open", FailureText(failure));
    }
}

bool TSocketChannel::SendData(const TCmdBuffer& Data) {
    try {
        if (!IsConnected()) throw CommException(kReadNotConnected, kSocketNotConnected);
        SendBytes(Data);
        return true;
    } catch (const std::exception& failure) {
        return Fail("send data", FailureText(failure));
    }
}

std::int32_t TSocketChannel::ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte,
                                        std::uint8_t EndByte, std::int32_t TimeoutMs) {
    std::string failure;
    const std::int32_t code = ReceiveAnswer(Receiver(),
                                            {.startByte = StartByte,
                                             .endByte = EndByte,
                                             .timeoutMs = TimeoutMs,
                                             .timeoutText = kSocketTimeoutText},
                                            clock_, Reply, failure);
    if (code != kReadOk) Fail("read data", failure);
    return code;
}

bool TSocketChannel::Fail(const char* operation, const std::string& reason) {
    LastError = "[" + protocol_ + "] Fail " + operation + " (" + host_ + ":" +
                std::to_string(port_) + ") - " + reason;
    return false;
}

}  // namespace tolvane

#include "comm/TDevCommRS232.h"

#include <algorithm>
#include <span>

#include "comm/AnswerReader.h"
#include "system/SystemError.h"

namespace tolvane {
namespace {

constexpr TMilliseconds kPoll{10};
constexpr const char* kSerialTimeoutText = "Read timeour occured";

}  // namespace

// Takes one byte at a time, so that the bytes after the end byte stay in the port.
class TDevCommRS232::TReceiver : public TByteReceiver {
public:
    explicit TReceiver(TDevCommRS232& channel) : channel_(channel) {}

    void CheckConnected() override { channel_.CheckConnected(); }

    std::span<const std::uint8_t> Receive(TMilliseconds limit) override {
        if (channel_.port_.ReadByte(byte_)) return {&byte_, 1};
        channel_.clock_.Sleep(std::min(limit, kPoll));
        return {};
    }

private:
    TDevCommRS232& channel_;
    std::uint8_t byte_ = 0;
};

std::string TDevCommRS232::GetDescription() const {
    return "RS232 (" + name_ + ")";
}

bool TDevCommRS232::IsConnected() const {
    return port_.Connected();
}

void TDevCommRS232::CheckConnected() const {
    if (!IsConnected()) throw CommException(kReadNotConnected, "Com port is not connected.");
}

bool TDevCommRS232::Open() {
    Close();
    try {
        port_.Open(name_, settings_);
        return IsConnected();
    } catch (const std::exception& failure) {
        LastError = "[RS232] Fail open \"" + name_ + "\" - " + FailureText(failure);
        return false;
    }
}

void TDevCommRS232::Close() {
    port_.Close();
}

bool TDevCommRS232::SendData(const TCmdBuffer& Data) {
    try {
        CheckConnected();
        port_.PurgeBuffers();
        if (port_.Write(Data.data(), Data.size()) != Data.size())
            throw std::runtime_error("Fail writing to Com.");
        return true;
    } catch (const std::exception& failure) {
        LastError = "[RS232] Fail send data (" + name_ + "): " + FailureText(failure);
        return false;
    }
}

std::int32_t TDevCommRS232::ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte,
                                       std::uint8_t EndByte, std::int32_t TimeoutMs) {
    TReceiver receiver(*this);
    std::string failure;
    const std::int32_t code = ReceiveAnswer(receiver,
                                            {.startByte = StartByte,
                                             .endByte = EndByte,
                                             .timeoutMs = TimeoutMs,
                                             .timeoutText = kSerialTimeoutText},
                                            clock_, Reply, failure);
    if (code != kReadOk) LastError = "[RS232] Fail receive data (" + name_ + "): " + failure;
    return code;
}

}  // namespace tolvane

#include "tests/support/scales/ScriptedChannel.h"

#include <algorithm>
#include <span>
#include <utility>

#include "comm/AnswerReader.h"

namespace tolvane::test {

class TScriptedChannel::TReceiver : public TByteReceiver {
public:
    explicit TReceiver(TScriptedChannel& channel) : channel_(channel) {}
    void CheckConnected() override {
        if (!channel_.IsConnected())
            throw CommException(kReadNotConnected, "Peer is not connected.");
    }
    std::span<const std::uint8_t> Receive(TMilliseconds limit) override {
        piece_.clear();
        if (!channel_.incoming_.empty()) {
            piece_ = std::move(channel_.incoming_.front());
            channel_.incoming_.pop_front();
        } else {
            CheckConnected();
        }
        if (piece_.empty()) channel_.clock_.Sleep(std::min(limit, TMilliseconds(100)));
        return piece_;
    }

private:
    TScriptedChannel& channel_;
    TCmdBuffer piece_;
};

bool TScriptedChannel::SendData(const TCmdBuffer& Data) {
    TScriptedReply reply;
    if (IsConnected() && !script.empty()) {
        reply = std::move(script.front());
        script.pop_front();
    }
    if (!IsConnected()) reply.sendError = "[SCRIPT] Fail send data (peer) - Peer is not connected.";
    if (!reply.sendError.empty()) {
        LastError = reply.sendError;
        return false;
    }
    sent.push_back(Data);
    for (TCmdBuffer& piece : reply.pieces)
        incoming_.push_back(std::move(piece));
    verbatim_ = std::move(reply.verbatim);
    return true;
}

std::int32_t TScriptedChannel::ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte,
                                          std::uint8_t EndByte, std::int32_t TimeoutMs) {
    reads.push_back({StartByte, EndByte, TimeoutMs});
    if (verbatim_) {
        const TScriptedReply::TVerbatim result = *std::exchange(verbatim_, std::nullopt);
        Reply = result.reply;
        if (result.code != kReadOk) LastError = result.error;
        return result.code;
    }
    TReceiver receiver(*this);
    std::string failure;
    const std::int32_t code = ReceiveAnswer(
        receiver, {StartByte, EndByte, TimeoutMs, "Read timeout occured"}, clock_, Reply, failure);
    if (code != kReadOk) LastError = "[SCRIPT] Fail read data (peer) - " + failure;
    return code;
}

}  // namespace tolvane::test

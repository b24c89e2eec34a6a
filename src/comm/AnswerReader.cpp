#include "comm/AnswerReader.h"

#include "system/SystemError.h"

namespace tolvane {
namespace {

// Far more than a scale ever sends. What a flood brings beyond it is not kept.
constexpr std::size_t kLongestReply = 0x100000;

void ReadUntilEnd(TByteReceiver& receiver, const TReadRequest& request, TClock& clock,
                  TCmdBuffer& reply) {
    receiver.CheckConnected();
    const TTimePoint deadline = clock.Now() + TMilliseconds(request.timeoutMs);
    for (TTimePoint now = clock.Now(); now < deadline; now = clock.Now()) {
        const auto left = std::chrono::ceil<TMilliseconds>(deadline - now);
        for (const std::uint8_t byte : receiver.Receive(left)) {
            if (TakeByte(byte, request, reply)) return;
        }
    }
    if (request.endByte == 0 && !reply.empty()) return;
    throw CommException(kReadTimeout, std::string(request.timeoutText));
}

}  // namespace

bool TakeByte(std::uint8_t byte, const TReadRequest& request, TCmdBuffer& reply) {
    const bool isEnd = request.endByte != 0 && byte == request.endByte;
    if (request.startByte != 0 && reply.empty() && byte != request.startByte) {
        if (isEnd) throw CommException(kReadWrongAnswer, "Wrong answer. No STX byte.");
        return false;
    }
    if (reply.size() < kLongestReply) reply.push_back(byte);
    return isEnd;
}

std::int32_t ReceiveAnswer(TByteReceiver& receiver, const TReadRequest& request, TClock& clock,
                           TCmdBuffer& reply, std::string& failure) {
    reply.clear();
    try {
        ReadUntilEnd(receiver, request, clock, reply);
        return kReadOk;
    } catch (const CommException& error) {
        failure = error.what();
        return error.ErrorCode;
    } catch (const std::exception& error) {
        failure = FailureText(error);
        return kReadOtherFailure;
    }
}

}  // namespace tolvane

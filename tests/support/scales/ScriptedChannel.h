#pragma once

#include <deque>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "comm/AnswerReader.h"
#include "comm/DevCommBaseUnit.h"
#include "system/Clock.h"

namespace tolvane::test {

// How the peer answers one request.
struct TScriptedReply {
    // What ReadAnswer returns as it is, without applying the reading rule.
    struct TVerbatim {
        std::int32_t code = kReadOk;
        TCmdBuffer reply;
        std::string error;
    };

    std::vector<TCmdBuffer>
        pieces;  // one arrives per wait; an empty one: nothing arrives in that wait
    std::optional<TVerbatim> verbatim;
    std::string sendError;  // not empty: the request does not go out
};

inline TScriptedReply Answer(TCmdBuffer frame) {
    return {{std::move(frame)}, std::nullopt, {}};
}
inline TScriptedReply ReadResult(std::int32_t code, TCmdBuffer reply, std::string error) {
    return {{}, TScriptedReply::TVerbatim{code, std::move(reply), std::move(error)}, {}};
}
inline TScriptedReply SendFailure(std::string error) {
    return {{}, std::nullopt, std::move(error)};
}

// A channel whose peer follows a script: each request takes the next reply; when none is left, the
// peer is silent. Reads obey the channels' own reading rule and wait by the clock's pauses.
class TScriptedChannel : public TDevComm {
public:
    explicit TScriptedChannel(TClock& clock) : clock_(clock) {}

    struct TRead {
        std::uint8_t startByte;
        std::uint8_t endByte;
        std::int32_t timeoutMs;
    };

    std::deque<TScriptedReply> script;
    std::vector<TCmdBuffer> sent;
    std::vector<TRead> reads;
    std::string openError;  // not empty: Open fails with it
    bool dropped = false;   // the peer is gone
    bool* freed = nullptr;  // set when the channel is destroyed

    // Lets bytes arrive that answer no request.
    void PeerSends(TCmdBuffer piece) { incoming_.push_back(std::move(piece)); }

    ~TScriptedChannel() override {
        if (freed != nullptr) *freed = true;
    }
    std::string GetDescription() const override { return "SCRIPT (peer)"; }
    bool IsConnected() const override { return open_ && !dropped; }
    bool Open() override {
        open_ = openError.empty();
        incoming_.clear();
        if (!open_) LastError = openError;
        return open_;
    }
    void Close() override { open_ = false; }
    bool SendData(const TCmdBuffer& Data) override;
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte, std::uint8_t EndByte,
                            std::int32_t TimeoutMs) override;

private:
    class TReceiver;

    TClock& clock_;
    bool open_ = false;
    std::deque<TCmdBuffer> incoming_;
    std::optional<TScriptedReply::TVerbatim> verbatim_;
};

}  // namespace tolvane::test

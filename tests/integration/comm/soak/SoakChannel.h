#pragma once

#include <functional>
#include <utility>

#include "comm/DevCommBaseUnit.h"

namespace tolvane::test {

// What a soak does around each request and each read of the channel that is under test.
struct TSoakHooks {
    std::function<void()> beforeSend;
    std::function<void()> sent;
    std::function<void(const TCmdBuffer& reply, std::int32_t timeoutMs)> beforeRead;
    std::function<void(const TCmdBuffer& reply)> afterRead;
};

// The channel itself, with the hooks around its own operations.
template <class TChannel>
class TSoakChannel : public TChannel {
public:
    template <class... TArguments>
    explicit TSoakChannel(const TSoakHooks& hooks, TArguments&&... arguments)
        : TChannel(std::forward<TArguments>(arguments)...), hooks_(hooks) {}

    bool SendData(const TCmdBuffer& Data) override {
        hooks_.beforeSend();
        const bool done = TChannel::SendData(Data);
        if (done) hooks_.sent();
        return done;
    }
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte, std::uint8_t EndByte,
                            std::int32_t TimeoutMs) override {
        // The channel's own first step; the hook looks at what has been read.
        Reply.clear();
        hooks_.beforeRead(Reply, TimeoutMs);
        const std::int32_t code = TChannel::ReadAnswer(Reply, StartByte, EndByte, TimeoutMs);
        hooks_.afterRead(Reply);
        return code;
    }

private:
    const TSoakHooks& hooks_;
};

}  // namespace tolvane::test

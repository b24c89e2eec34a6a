#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "scale/DevElicomScaleUnit.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/scales/ScriptedChannel.h"

namespace tolvane::test {

// A reply on the wire with any body: a marker of its own in front of every byte, which is allowed
// and is not how the driver encodes.
inline TCmdBuffer Wire(const TCmdBuffer& body) {
    TCmdBuffer frame = {0x02};
    for (const std::uint8_t byte : body) {
        const bool offset = byte <= 0x14;
        frame.push_back(offset ? 0x0D : 0x0C);
        frame.push_back(static_cast<std::uint8_t>(offset ? byte + 0x14 : byte));
    }
    frame.push_back(0x03);
    return frame;
}

// A right reply of scale 0.
inline TCmdBuffer ReplyTo(std::uint8_t command, const TCmdBuffer& data) {
    TCmdBuffer body = {0, command};
    body.insert(body.end(), data.begin(), data.end());
    unsigned sum = 0;
    for (const std::uint8_t byte : body)
        sum += byte;
    body.push_back(static_cast<std::uint8_t>(sum % 256));
    return Wire(body);
}

// The body behind a request on the wire, read by the frame's description: a 0D adds 14 to what
// follows, a 0C does not.
inline TCmdBuffer BodyOf(const TCmdBuffer& request) {
    TCmdBuffer body;
    bool offset = false;
    for (std::size_t i = 1; i + 1 < request.size(); ++i) {
        if (request[i] == 0x0C || request[i] == 0x0D)
            offset = request[i] == 0x0D;
        else
            body.push_back(static_cast<std::uint8_t>(offset ? request[i] - 0x14 : request[i]));
    }
    return body;
}

// A driver over a scripted channel.
class TScaleTest : public testing::Test {
public:
    TScaleTest() { MakeDriver(false); }

    void MakeDriver(bool serial) {
        auto owned = std::make_unique<TScriptedChannel>(clock);
        channel = owned.get();
        scale = std::make_unique<TElicomScale>(std::move(owned), serial, clock);
        EXPECT_TRUE(scale->OpenChannel());
    }
    // The data of the only request that went out, after its address and command were checked.
    TCmdBuffer OnlyData(std::uint8_t command) const {
        if (channel->sent.size() != 1) {
            ADD_FAILURE() << channel->sent.size() << " requests went out";
            return {};
        }
        TCmdBuffer body = BodyOf(channel->sent[0]);
        EXPECT_GE(body.size(), 3U);
        EXPECT_EQ(body[0], 0);
        EXPECT_EQ(body[1], command);
        return {body.begin() + 2, body.end() - 1};
    }

    TRecordingClock clock;
    TScriptedChannel* channel = nullptr;
    std::unique_ptr<TElicomScale> scale;
    std::int32_t errCode = -1;
};

}  // namespace tolvane::test

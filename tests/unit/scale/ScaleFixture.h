#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "scale/DevElicomScaleUnit.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/scales/ScriptedChannel.h"
#include "tests/support/scales/WireFrames.h"

namespace tolvane::test {

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

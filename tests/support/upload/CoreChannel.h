#pragma once

#include "simulator/ScaleCore.h"
#include "tests/support/scales/ScriptedChannel.h"

namespace tolvane::test {

// A channel straight to a virtual scale, without a wire. A request that the scale does not answer
// runs into the reading rule's time-out.
class TCoreChannel : public TScriptedChannel {
public:
    TCoreChannel(TClock& clock, simulator::TScaleCore& core)
        : TScriptedChannel(clock), core_(core) {}
    bool SendData(const TCmdBuffer& Data) override {
        if (!TScriptedChannel::SendData(Data)) return false;
        for (const simulator::TSendStep& step : core_.Answer(Data).steps)
            PeerSends(step.bytes);
        return true;
    }

private:
    simulator::TScaleCore& core_;
};

}  // namespace tolvane::test

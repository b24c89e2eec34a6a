#pragma once

#include <memory>
#include <string>

#include "tests/support/upload/CoreChannel.h"
#include "upload/ScaleFactory.h"

namespace tolvane::test {

// Drivers of one virtual scale, without a wire.
class TCoreFactory : public TScaleFactory {
public:
    TCoreFactory(TClock& clock, simulator::TScaleCore& core) : clock_(clock), core_(core) {}
    std::unique_ptr<TElicomScale> CreateRS232(std::int32_t, std::int32_t) override {
        return Create(true);
    }
    std::unique_ptr<TElicomScale> CreateTCP(const std::string&, std::int32_t) override {
        return Create(false);
    }
    std::unique_ptr<TElicomScale> CreateUDP(const std::string&) override { return Create(false); }

    std::string openError;                // not empty: channels do not open
    TScriptedChannel* channel = nullptr;  // the latest

private:
    std::unique_ptr<TElicomScale> Create(bool serial) {
        auto made = std::make_unique<TCoreChannel>(clock_, core_);
        made->openError = openError;
        channel = made.get();
        return std::make_unique<TElicomScale>(std::move(made), serial, clock_);
    }

    TClock& clock_;
    simulator::TScaleCore& core_;
};

}  // namespace tolvane::test

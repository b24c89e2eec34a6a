#pragma once

#include <map>
#include <memory>
#include <string>

#include "scale/DevElicomScaleUnit.h"
#include "tests/integration/comm/soak/SoakChannel.h"
#include "tests/integration/comm/soak/SoakClock.h"
#include "tests/integration/comm/soak/SoakPlan.h"
#include "tests/integration/comm/soak/SoakScale.h"

namespace tolvane::test {

// Carries a plan out: the driver over a real channel of the wire, against the virtual scale.
class TSoakRun {
public:
    explicit TSoakRun(TWire wire);
    ~TSoakRun();
    TSoakRun(const TSoakRun&) = delete;
    TSoakRun& operator=(const TSoakRun&) = delete;

    // Does one exchange and what it asks for afterwards, and checks both. The driver's LastError
    // after it is counted in `texts`, a success under "".
    void Do(const TSoakExchange& exchange);

    const std::string& Address() const { return address_; }
    simulator::TScaleState State() { return scale_.Scale().State(); }
    int RequestCount() const { return requests_; }

    std::map<std::string, int> texts;

private:
    std::unique_ptr<TDevComm> MakeChannel();
    void Script(const TSoakExchange& exchange);
    bool Command(const TSoakExchange& exchange);
    bool CheckVersion(std::int32_t& errCode);
    void CleanUp(TAfter after);
    void Reopen();
    void Restart();
    void Drain();

    // The hooks.
    void AwaitSurplus() const;
    void BeginRead(const TCmdBuffer& reply, std::int32_t timeoutMs);
    void EndRead(const TCmdBuffer& reply);
    TMilliseconds Left(const TCmdBuffer& reply, int look, TMilliseconds timeout) const;

    TWire wire_;
    TSoakClock clock_;
    TSoakScale scale_;
    TSoakHooks hooks_;
    std::string address_;
    std::unique_ptr<TElicomScale> driver_;
    int port_ = -1;  // the test's own descriptor of the serial port
    const TSoakExchange* exchange_ = nullptr;
    bool scripted_ = false;
    int requests_ = 0;   // all that went out
    int attempts_ = 0;   // of the exchange
    int drained_ = -1;   // the bytes that a draining read has to wait for
    int surplus_ = 0;    // bytes that will wait in a serial port although nobody reads them
    int lastReply_ = 0;  // bytes of the raw reply
};

}  // namespace tolvane::test

#pragma once

#include <cstdint>
#include <string>

#include "comm/DevCommBaseUnit.h"
#include "comm/MyCPort.h"
#include "system/Clock.h"

namespace tolvane {

// The channel to a scale on a serial line. It polls for received bytes every 10 ms of its clock.
class TDevCommRS232 : public TDevComm {
public:
    explicit TDevCommRS232(TClock& clock) : clock_(clock) {}
    ~TDevCommRS232() override = default;

    // Settings take effect at the next Open.
    void SetPort(std::string name) { name_ = std::move(name); }
    void SetBaudRate(TBaudRate rate) { settings_.baudRate = rate; }
    void SetStopBits(TStopBits bits) { settings_.stopBits = bits; }
    void SetDataBits(TDataBits bits) { settings_.dataBits = bits; }
    void SetParity(TParityBits parity) { settings_.parity = parity; }
    void SetFlowControl(TFlowControl flow) { settings_.flowControl = flow; }

    std::string GetDescription() const override;
    bool IsConnected() const override;
    bool Open() override;
    void Close() override;
    // First discards what an earlier exchange has left in the line's buffers.
    bool SendData(const TCmdBuffer& Data) override;
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte, std::uint8_t EndByte,
                            std::int32_t TimeoutMs) override;

private:
    class TReceiver;

    void CheckConnected() const;

    TClock& clock_;
    std::string name_;
    TLineSettings settings_;
    TComPort port_;
};

}  // namespace tolvane

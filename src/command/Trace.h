#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "command/TraceFile.h"
#include "config/TypesUnit.h"
#include "upload/ScaleFactory.h"

namespace tolvane {

// A channel that does what another one does and writes every request and every answer into a trace.
// An answer that failed is written as far as it came, also when nothing came. What channels drop
// before a start byte nobody sees.
class TTracingChannel : public TDevComm {
public:
    // `scale`: the number by which the trace knows the scale. The trace must outlive the channel.
    TTracingChannel(std::unique_ptr<TDevComm> channel, TTraceFile& trace, std::uint32_t scale);

    std::string GetDescription() const override { return channel_->GetDescription(); }
    bool IsConnected() const override { return channel_->IsConnected(); }
    bool Open() override;
    void Close() override { channel_->Close(); }
    bool SendData(const TCmdBuffer& Data) override;
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte, std::uint8_t EndByte,
                            std::int32_t TimeoutMs) override;

private:
    std::unique_ptr<TDevComm> channel_;
    TTraceFile& trace_;
    std::uint32_t scale_;
};

// Makes the drivers of another factory, with channels that are traced. Used by one thread at a
// time; several factories may share a trace.
class TTracingFactory : public TScaleFactory {
public:
    // Both must outlive this object; the trace also all its drivers.
    TTracingFactory(TScaleFactory& factory, TTraceFile& trace) : factory_(factory), trace_(trace) {}

    // The drivers made from now on are this scale's. To be called before each scale, as a factory
    // is asked for an address and knows no scales.
    void SetScale(const TScaleRec& scale);

    std::unique_ptr<TElicomScale> CreateRS232(std::int32_t portNumber,
                                              std::int32_t bitsPerSecond) override;
    std::unique_ptr<TElicomScale> CreateTCP(const std::string& host, std::int32_t port) override;
    std::unique_ptr<TElicomScale> CreateUDP(const std::string& host) override;

private:
    std::unique_ptr<TElicomScale> Traced(std::unique_ptr<TElicomScale> driver,
                                         std::uint8_t commType);

    TScaleFactory& factory_;
    TTraceFile& trace_;
    TTracedScale scale_;
};

}  // namespace tolvane

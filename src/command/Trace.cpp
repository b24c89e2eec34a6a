#include "command/Trace.h"

#include <utility>

namespace tolvane {

TTracingChannel::TTracingChannel(std::unique_ptr<TDevComm> channel, TTraceFile& trace,
                                 std::uint32_t scale)
    : channel_(std::move(channel)), trace_(trace), scale_(scale) {}

bool TTracingChannel::Open() {
    const bool open = channel_->Open();
    if (!open) LastError = channel_->LastError;
    return open;
}

bool TTracingChannel::SendData(const TCmdBuffer& Data) {
    const bool sent = channel_->SendData(Data);
    if (!sent) LastError = channel_->LastError;
    trace_.Add(scale_, {.direction = TTraceDirection::Request,
                        .result = sent ? std::uint8_t{0} : kTraceNotSent,
                        .bytes = Data,
                        .failure = sent ? std::string_view() : LastError});
    return sent;
}

std::int32_t TTracingChannel::ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte,
                                         std::uint8_t EndByte, std::int32_t TimeoutMs) {
    const std::int32_t result = channel_->ReadAnswer(Reply, StartByte, EndByte, TimeoutMs);
    if (result != kReadOk) LastError = channel_->LastError;
    trace_.Add(scale_, {.direction = TTraceDirection::Reply,
                        .result = static_cast<std::uint8_t>(result),
                        .bytes = Reply,
                        .failure = result == kReadOk ? std::string_view() : LastError});
    return result;
}

void TTracingFactory::SetScale(const TScaleRec& scale) {
    scale_.number = scale.ScaleNumb;
    scale_.name = scale.ScaleName.Str();
    scale_.codeTable = scale.Encoding;
}

std::unique_ptr<TElicomScale> TTracingFactory::CreateRS232(std::int32_t portNumber,
                                                           std::int32_t bitsPerSecond) {
    return Traced(factory_.CreateRS232(portNumber, bitsPerSecond), kCommSerial);
}

std::unique_ptr<TElicomScale> TTracingFactory::CreateTCP(const std::string& host,
                                                         std::int32_t port) {
    return Traced(factory_.CreateTCP(host, port), kCommTcp);
}

std::unique_ptr<TElicomScale> TTracingFactory::CreateUDP(const std::string& host) {
    return Traced(factory_.CreateUDP(host), kCommUdp);
}

std::unique_ptr<TElicomScale> TTracingFactory::Traced(std::unique_ptr<TElicomScale> driver,
                                                      std::uint8_t commType) {
    scale_.commType = commType;
    scale_.link = driver->Channel->GetDescription();
    driver->Channel = std::make_unique<TTracingChannel>(std::move(driver->Channel), trace_,
                                                        trace_.AddScale(scale_));
    return driver;
}

}  // namespace tolvane

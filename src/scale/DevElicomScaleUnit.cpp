#include "scale/DevElicomScaleUnit.h"

#include <array>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <utility>

#include "comm/TDevCommRS232.h"
#include "comm/TDevCommTCP.h"
#include "comm/TDevCommUDP.h"
#include "config/SerialSpeeds.h"
#include "scale/PackedDecimal.h"
#include "scale/ScaleCommands.h"
#include "scale/ScaleFrame.h"
#include "scale/TextLengths.h"
#include "system/SystemError.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

constexpr std::int32_t kSerialTimeoutMs = 1000;
constexpr std::int32_t kNetworkTimeoutMs = 3000;
constexpr TMilliseconds kAfterParameter{30};
// Pauses after the first, second, third, and every later wrong answer.
constexpr std::array kRepeatPauses = {TMilliseconds(0), TMilliseconds(10), TMilliseconds(100),
                                      TMilliseconds(200)};

constexpr std::int32_t kMostTare = 99;
constexpr std::int32_t kMostLabel = 20;

// Fields of the version reply's data.
constexpr std::uint8_t kVersionAt = 1;
constexpr std::uint8_t kVersionLength = 4;
constexpr std::size_t kMaxPluAt = 9;
constexpr std::size_t kModeAt = 16;
constexpr std::int32_t kModeMask = 3;

constexpr bool PortsKnowEverySpeed() {
    for (const TSerialSpeed& speed : kSerialSpeeds) {
        if (BaudRateOf(speed.bitsPerSecond) == brCustom) return false;
    }
    return true;
}
static_assert(PortsKnowEverySpeed());

TMilliseconds RepeatPause(std::size_t attempt) {
    return attempt < kRepeatPauses.size() ? kRepeatPauses[attempt - 1] : kRepeatPauses.back();
}

void CheckPlu(std::int32_t plu) {
    if (plu < 0) throw std::runtime_error("Invalid PLU number");
}

void NoData(TCmdBuffer& /*data*/) {}
void NoFields(const TCmdBuffer& /*reply*/) {}

// The three bytes that begin the data of every article command.
void AppendPlu(std::int32_t plu, TCmdBuffer& data) {
    const auto lowByte = [](std::int32_t number) {
        return static_cast<std::uint8_t>(number & 0xFF);
    };
    data.insert(data.end(), {std::uint8_t{0}, lowByte(plu % 256), lowByte(plu / 256)});
}

// The common rule of every command. `build` fills the request's data and may refuse the arguments
// by throwing; `take` reads the reply's fields before its error code is checked.
template <class TBuild, class TTake>
bool Run(TElicomScale& scale, const TScaleCommand& command, std::int32_t& errCode, TBuild build,
         TTake take) {
    errCode = command.initialErrCode;
    try {
        TCmdBuffer data;
        build(data);
        if (!scale.SendCommand(command.code, data)) throw TFailure(scale.LastError);
        if (data.empty()) {
            scale.WrongReply = true;
            throw std::runtime_error("Unexpected answer from scale. No error code");
        }
        take(data);
        errCode = data[0];
        if (errCode != 0)
            throw std::runtime_error("Scale return Error code: " + std::to_string(errCode));
        return true;
    } catch (const std::exception& failure) {
        scale.LastError = std::string(command.failurePrefix) + FailureText(failure);
        return false;
    }
}

template <class TBuild>
bool Run(TElicomScale& scale, const TScaleCommand& command, std::int32_t& errCode, TBuild build) {
    return Run(scale, command, errCode, build, NoFields);
}

}  // namespace

TElicomScale::TElicomScale(std::unique_ptr<TDevComm> channel, bool needsSerialTimeouts,
                           TClock& clock)
    : Channel(std::move(channel)), serialTimeouts_(needsSerialTimeouts), clock_(clock) {}

TElicomScale::~TElicomScale() = default;

std::unique_ptr<TElicomScale> TElicomScale::CreateRS232(std::int32_t portNumber,
                                                        std::int32_t bitsPerSecond, TClock& clock) {
    auto channel = std::make_unique<TDevCommRS232>(clock);
    channel->SetPort("COM" + std::to_string(portNumber));
    channel->SetBaudRate(BaudRateOf(bitsPerSecond));
    channel->SetStopBits(sbOneStopBit);
    channel->SetDataBits(dbEight);
    channel->SetParity(prNone);
    channel->SetFlowControl(fcNone);
    return std::make_unique<TElicomScale>(std::move(channel), true, clock);
}

std::unique_ptr<TElicomScale> TElicomScale::CreateTCP(const std::string& host, std::int32_t port,
                                                      TClock& clock) {
    auto channel = std::make_unique<TDevCommTCP>(clock);
    channel->SetHost(host);
    channel->SetPort(port);
    return std::make_unique<TElicomScale>(std::move(channel), false, clock);
}

std::unique_ptr<TElicomScale> TElicomScale::CreateUDP(const std::string& host, TClock& clock) {
    auto channel = std::make_unique<TDevCommUDP>(clock);
    channel->SetHost(host);
    channel->SetPort(kScaleUdpPort);
    return std::make_unique<TElicomScale>(std::move(channel), false, clock);
}

bool TElicomScale::OpenChannel() {
    if (Channel->Open()) return true;
    LastError = "Fail init communication interface: " + Channel->LastError;
    return false;
}

void TElicomScale::Exchange(const TCmdBuffer& frame, TCmdBuffer& reply) {
    const std::int32_t timeout = serialTimeouts_ ? kSerialTimeoutMs : kNetworkTimeoutMs;
    for (std::size_t attempt = 1;; ++attempt) {
        reply.clear();
        if (!Channel->SendData(frame)) throw TFailure("[SendData]" + Channel->LastError);
        const std::int32_t result = Channel->ReadAnswer(reply, kReplyStart, kFrameEnd, timeout);
        if (result == kReadOk) return;
        // Only a wrong answer makes the driver repeat the request; silence does not.
        if (result != kReadWrongAnswer || attempt > Retries) {
            if (result == kReadWrongAnswer) WrongReply = true;
            throw TFailure("[ReadResponce]" + Channel->LastError);
        }
        const TMilliseconds pause = RepeatPause(attempt);
        if (pause > TMilliseconds(0)) clock_.Sleep(pause);
    }
}

bool TElicomScale::SendCommand(std::uint8_t Command, TCmdBuffer& Data) {
    try {
        Exchange(EncodeRequest(Address, Command, Data), Data);
        const bool wrongBefore = std::exchange(WrongReply, true);
        Data = DecodeReply(Data, Address, Command);
        WrongReply = wrongBefore;
        return true;
    } catch (const std::exception& failure) {
        LastError = FailureText(failure);
        return false;
    }
}

bool TElicomScale::SetWeightMode(std::int32_t& ErrCode) {
    return Run(*this, kSetWeightModeCommand, ErrCode, NoData);
}

bool TElicomScale::SetPrgMode(std::int32_t& ErrCode) {
    return Run(*this, kSetPrgModeCommand, ErrCode, NoData);
}

bool TElicomScale::GetVersion(std::int32_t& ErrCode, std::int32_t& MaxPLU, std::int32_t& Mode,
                              std::string& Version) {
    MaxPLU = 0;
    Mode = 0;
    Version.clear();
    return Run(*this, kGetVersionCommand, ErrCode, NoData, [&](const TCmdBuffer& reply) {
        const auto at = [&](std::size_t i) -> std::int32_t {
            return i < reply.size() ? reply[i] : 0;
        };
        Version = TDevCommBase::BytesToText(reply, kVersionAt, kVersionLength, kCodeTableRaw);
        MaxPLU = at(kMaxPluAt) + 256 * at(kMaxPluAt + 1);
        Mode = at(kModeAt) & kModeMask;
    });
}

bool TElicomScale::SetPrice(std::int32_t& ErrCode, std::int32_t PLU, double Price, double Weight) {
    const bool withWeight = !(Weight < 0);
    return Run(*this, withWeight ? kSetPriceWeightCommand : kSetPriceCommand, ErrCode,
               [&](TCmdBuffer& data) {
                   CheckPlu(PLU);
                   AppendPlu(PLU, data);
                   AppendPrice(Price, data);
                   if (withWeight) AppendWeight(Weight, data);
               });
}

bool TElicomScale::SetPrice(std::int32_t& ErrCode, std::int32_t PLU, double Price) {
    return SetPrice(ErrCode, PLU, Price, -1);
}

bool TElicomScale::SetPriceC(std::int32_t& ErrCode, std::int32_t PLU, double Price, bool Pieces,
                             std::int32_t TareNo, std::int32_t LabelNo) {
    return Run(*this, kSetPriceCCommand, ErrCode, [&](TCmdBuffer& data) {
        CheckPlu(PLU);
        if (TareNo < 0 || TareNo > kMostTare) throw std::runtime_error("Invalid PLU Tare ID");
        if (LabelNo < 0 || LabelNo > kMostLabel) throw std::runtime_error("Invalid PLU Label ID");
        AppendPlu(PLU, data);
        AppendPrice(Price, data);
        TDevCommBase::AppendByte(Pieces ? 1 : 0, data);
        TDevCommBase::AppendByte(static_cast<std::uint8_t>(TareNo), data);
        TDevCommBase::AppendByte(static_cast<std::uint8_t>(LabelNo), data);
    });
}

bool TElicomScale::SetParam(std::int32_t& ErrCode, std::int32_t PLU, std::int32_t ParN,
                            std::string_view Text, std::uint8_t CodeTable) {
    const std::string text = FitParameter(Text, ParN, ScaleType);
    const std::string prefix = "Fail set parameter: Plu:" + std::to_string(PLU) +
                               " ParN:" + std::to_string(ParN) + " ParT:\"" + text + "\"\r\n";
    const TScaleCommand command{kSetParamCode, prefix};
    const bool written = Run(*this, command, ErrCode, [&](TCmdBuffer& data) {
        AppendPlu(PLU, data);
        TDevCommBase::AppendByte(static_cast<std::uint8_t>(ParN & 0xFF), data);
        TDevCommBase::AppendByte(static_cast<std::uint8_t>(text.size() & 0xFF), data);
        TDevCommBase::TextToBytes(text, static_cast<std::int32_t>(text.size()), CodeTable, data);
    });
    if (written) clock_.Sleep(kAfterParameter);
    return written;
}

}  // namespace tolvane

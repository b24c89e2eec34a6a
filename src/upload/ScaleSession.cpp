#include "upload/ScaleSession.h"

#include <array>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string_view>

#include "system/SystemError.h"
#include "text/Failure.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

constexpr std::uint8_t kSerialRetries = 10;
constexpr TMilliseconds kBeforeProgramming{500};
constexpr TMilliseconds kBeforeVersion{800};
constexpr TMilliseconds kBeforeWeighing{500};

// The number after "COM"; 1 when there is none.
std::int32_t SerialPortNumber(std::string_view portName) {
    if (portName.size() <= 3) return 1;
    return ParseIntegerOr(portName.substr(3, 3), 1);
}

std::int32_t BitsPerSecond(std::uint8_t baudRate) {
    constexpr std::array<std::int32_t, 5> kSpeeds = {9600, 19200, 38400, 57600, 115200};
    return baudRate < kSpeeds.size() ? kSpeeds[baudRate] : 38400;
}

}  // namespace

TScaleSession::TScaleSession(TScaleFactory& factory, TClock& clock, TRunView& view,
                             const TRunStop& stop, char decimalSeparator)
    : factory_(factory),
      clock_(clock),
      view_(view),
      stop_(stop),
      decimalSeparator_(decimalSeparator) {}

bool TScaleSession::InitComm(const TScaleRec& Rec) {
    LastError.clear();
    Close();
    try {
        driver_ = CreateDriver(Rec);
        if (!driver_->OpenChannel()) throw TFailure(driver_->LastError);
        return true;
    } catch (const std::exception& error) {
        LastError = "InitComm >> " + FailureText(error);
        return false;
    }
}

std::unique_ptr<TElicomScale> TScaleSession::CreateDriver(const TScaleRec& rec) {
    std::unique_ptr<TElicomScale> driver;
    switch (rec.CommType) {
        case kCommSerial:
            driver = factory_.CreateRS232(SerialPortNumber(rec.TCPAddress.View()),
                                          BitsPerSecond(rec.BaudRate));
            // A network scale keeps address 0 and three repeats.
            driver->Retries = kSerialRetries;
            driver->Address = rec.ScaleAddr;
            break;
        case kCommTcp:
            driver = factory_.CreateTCP(rec.TCPAddress.Str(), rec.TCPPort);
            break;
        case kCommUdp:
            driver = factory_.CreateUDP(rec.TCPAddress.Str());
            break;
        default:
            throw std::runtime_error("Invalid communication type.");
    }
    driver->ScaleType = rec.ScaleType;
    return driver;
}

std::optional<TScaleSession::TVersion> TScaleSession::EnterProgramming() {
    if (stop_.IsAbandoned()) return std::nullopt;
    std::int32_t errCode = 0;
    driver_->SetWeightMode(errCode);
    clock_.Sleep(kBeforeProgramming);
    if (stop_.IsAbandoned()) return std::nullopt;
    if (!driver_->SetPrgMode(errCode)) throw TFailure(CommandError("[SetPrgMode]", errCode));
    clock_.Sleep(kBeforeVersion);
    TVersion version;
    if (!driver_->GetVersion(errCode, version.maxPlu, version.mode, version.text))
        throw TFailure(CommandError("[GetVersion]", errCode));
    return version;
}

void TScaleSession::LeaveProgramming() {
    clock_.Sleep(kBeforeWeighing);
    std::int32_t errCode = 0;
    driver_->SetWeightMode(errCode);
}

std::string TScaleSession::CommandError(std::string_view operation, std::int32_t errCode) const {
    return std::string(operation) + " ErrCode: " + std::to_string(errCode) + ", " +
           driver_->LastError;
}

}  // namespace tolvane

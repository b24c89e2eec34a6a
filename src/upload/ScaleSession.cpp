#include "upload/ScaleSession.h"

#include <exception>
#include <stdexcept>
#include <string_view>

#include "config/SerialSpeeds.h"
#include "system/SystemError.h"
#include "text/Failure.h"
#include "text/Numbers.h"
#include "upload/DeletePass.h"
#include "upload/WritePass.h"

namespace tolvane {
namespace {

constexpr std::uint8_t kSerialRetries = 10;
constexpr std::int32_t kSpeedOfUnknownIndex = 38400;

// The number after "COM"; 1 when there is none.
std::int32_t SerialPortNumber(std::string_view portName) {
    if (portName.size() <= 3) return 1;
    return ParseIntegerOr(portName.substr(3, 3), 1);
}

std::int32_t BitsPerSecond(std::uint8_t baudRate) {
    const TSerialSpeed* speed = SerialSpeed(baudRate);
    return speed != nullptr ? speed->bitsPerSecond : kSpeedOfUnknownIndex;
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
            // A network scale keeps the driver's address 0 and three repeats.
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

TPassParts TScaleSession::Parts() const {
    return {.scale = *driver_,
            .clock = clock_,
            .view = view_,
            .stop = stop_,
            .decimalSeparator = decimalSeparator_};
}

bool TScaleSession::ProcessUpload(const std::vector<std::string>& Lines, const TScaleRec& Rec) {
    if (driver_ == nullptr) return false;
    TWritePass pass(Parts(), Rec);
    if (pass.Run(Lines)) return true;
    LastError = pass.LastError;
    return false;
}

bool TScaleSession::ProcessDelete(const std::vector<std::string>& Lines) {
    if (driver_ == nullptr) return false;
    TDeletePass pass(Parts());
    if (pass.Run(Lines)) return true;
    LastError = pass.LastError;
    return false;
}

}  // namespace tolvane

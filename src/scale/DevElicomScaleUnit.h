#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "comm/DevCommBaseUnit.h"
#include "system/Clock.h"

namespace tolvane {

// The driver of one label scale over one channel. Every command is one request and one reply; it
// returns false on failure and leaves the reason in LastError. ErrCode is the scale's own error
// code when it sent one. Used by one thread at a time; blocks for the exchange and its pauses.
class TElicomScale {
public:
    // Owns the channel. `needsSerialTimeouts`: the channel is a serial line, whose replies may take
    // 1000 ms instead of 3000.
    TElicomScale(std::unique_ptr<TDevComm> channel, bool needsSerialTimeouts, TClock& clock);
    // "COM" + port number, 8 data bits, one stop bit, no parity, no flow control.
    static std::unique_ptr<TElicomScale> CreateRS232(std::int32_t portNumber,
                                                     std::int32_t bitsPerSecond, TClock& clock);
    static std::unique_ptr<TElicomScale> CreateTCP(const std::string& host, std::int32_t port,
                                                   TClock& clock);
    // Always to port 1001.
    static std::unique_ptr<TElicomScale> CreateUDP(const std::string& host, TClock& clock);
    ~TElicomScale();

    std::string LastError;
    std::uint8_t Address = 0;
    std::unique_ptr<TDevComm> Channel;
    std::uint8_t Retries = 3;    // repeats of a request after a wrong answer
    std::int32_t ScaleType = 0;  // model code, see config/TypesUnit.h
    // A reply came that does not fit its request, and the repeats brought none that does. Stays
    // set.
    bool WrongReply = false;

    bool OpenChannel();
    // `Data` holds the request's data before the call and the reply's data after it. After a
    // failure its content has no meaning.
    bool SendCommand(std::uint8_t Command, TCmdBuffer& Data);

    bool SetWeightMode(std::int32_t& ErrCode);
    bool SetPrgMode(std::int32_t& ErrCode);
    // The fields are filled also when the scale answers with an error code.
    bool GetVersion(std::int32_t& ErrCode, std::int32_t& MaxPLU, std::int32_t& Mode,
                    std::string& Version);
    // Price in currency units; Weight in thousandths of the unit, below 0 to send no weight field.
    bool SetPrice(std::int32_t& ErrCode, std::int32_t PLU, double Price, double Weight);
    bool SetPrice(std::int32_t& ErrCode, std::int32_t PLU, double Price);
    bool SetPriceC(std::int32_t& ErrCode, std::int32_t PLU, double Price, bool Pieces,
                   std::int32_t TareNo, std::int32_t LabelNo);
    // Text in code page 1251; cut and padded to the parameter's length.
    bool SetParam(std::int32_t& ErrCode, std::int32_t PLU, std::int32_t ParN, std::string_view Text,
                  std::uint8_t CodeTable);

private:
    // Sends the request, and again after a wrong answer, until a reply has come; throws when none
    // comes.
    void Exchange(const TCmdBuffer& frame, TCmdBuffer& reply);

    bool serialTimeouts_;
    TClock& clock_;
};

}  // namespace tolvane

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace tolvane {

// The numeric value of each name is its position from 0.
enum TBaudRate {
    brCustom,
    br110,
    br300,
    br600,
    br1200,
    br2400,
    br4800,
    br9600,
    br14400,
    br19200,
    br38400,
    br56000,
    br57600,
    br115200,
    br128000,
    br256000
};
enum TStopBits { sbOneStopBit, sbOne5StopBits, sbTwoStopBits };
enum TDataBits { dbFive, dbSix, dbSeven, dbEight };
enum TParityBits { prNone, prOdd, prEven, prMark, prSpace };
enum TFlowControl { fcHardware, fcSoftware, fcNone, fcCustom };
enum TComEvent {
    evRxChar,
    evTxEmpty,
    evRxFlag,
    evRing,
    evBreak,
    evCTS,
    evDSR,
    evError,
    evRLSD,
    evRx80Full
};

// Bit/s by TBaudRate, every speed of the port driver; 0 for brCustom. The speeds of scales are in
// config/SerialSpeeds.h.
inline constexpr std::array<std::int32_t, 16> kBitsPerSecond = {
    0,     110,   300,   600,   1200,  2400,   4800,   9600,
    14400, 19200, 38400, 56000, 57600, 115200, 128000, 256000};
static_assert(kBitsPerSecond[br256000] == 256000);

// brCustom for a speed that has no name.
constexpr TBaudRate BaudRateOf(std::int32_t bitsPerSecond) {
    for (std::size_t i = 1; i < kBitsPerSecond.size(); ++i) {
        if (kBitsPerSecond[i] == bitsPerSecond) return static_cast<TBaudRate>(i);
    }
    return brCustom;
}

struct TLineSettings {
    TBaudRate baudRate = br9600;
    TStopBits stopBits = sbOneStopBit;
    TDataBits dataBits = dbEight;
    TParityBits parity = prNone;
    TFlowControl flowControl = fcNone;
};

// One serial port. Operations throw std::system_error with the system's error; Open throws
// std::runtime_error for a line setting that is not supported. One thread at a time.
class TComPort {
public:
    TComPort();
    ~TComPort();

    // "COM12", or a device's path where ports have paths. Driver buffers of 4096 bytes each way, no
    // write time-out, both buffers purged.
    void Open(const std::string& name, const TLineSettings& settings);
    void Close();
    bool Connected() const;
    void PurgeBuffers();
    std::size_t BytesWaiting();
    // Takes one byte that waits in the port. Returns false when there is none; never waits.
    bool ReadByte(std::uint8_t& byte);
    // Returns how many bytes were written.
    std::size_t Write(const std::uint8_t* bytes, std::size_t count);

private:
    struct TPort;
    std::unique_ptr<TPort> port_;
};

}  // namespace tolvane

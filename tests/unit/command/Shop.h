#pragma once

#include <chrono>

#include "command/Ledger.h"

namespace tolvane::test {

inline constexpr std::chrono::sys_seconds kNoon =
    std::chrono::sys_days(std::chrono::May / 1 / 2024) + std::chrono::hours(12);
inline constexpr std::chrono::days kWeek(7);

inline TScaleRec TcpScale() {
    TScaleRec scale;
    scale.ScaleNumb = 3;
    scale.ScaleName = "Cheese";
    scale.TCPAddress = "10.0.0.5";
    scale.TCPPort = 1001;
    scale.CommType = kCommTcp;
    scale.ScaleType = kScaleTypeS300;
    scale.Encoding = 2;
    return scale;
}

inline TScaleRec UdpScale() {
    TScaleRec scale = TcpScale();
    scale.CommType = kCommUdp;
    scale.ScaleType = kScaleTypeEts;
    return scale;
}

inline TScaleRec SerialScale() {
    TScaleRec scale = TcpScale();
    scale.TCPAddress = "COM1";
    scale.CommType = kCommSerial;
    scale.ScaleType = kScaleTypeEvl;
    scale.BaudRate = 1;
    scale.ScaleAddr = 7;
    return scale;
}

inline TScaleReport Report() {
    return {.version = "1.04", .maxPlu = 4000, .labelMode = 1};
}

inline TLedger LoadAt(const std::filesystem::path& folder, std::chrono::sys_seconds now,
                      const TScaleRec& scale = TcpScale(), const TLineChoices& choices = {}) {
    return TLedger::Load(folder, scale, choices, now, kWeek);
}

}  // namespace tolvane::test

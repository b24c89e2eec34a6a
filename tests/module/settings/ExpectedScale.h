#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "config/TypesUnit.h"
#include "text/Cp1251.h"

namespace tolvane::test {

// A scale's record as a test expects it; texts in UTF-8.
struct TExpectedScale {
    std::int32_t number;
    const char* name;
    const char* address;
    int port;
    std::int32_t type;
    int commType;
    int baudRate;
    std::int32_t encoding;
    int scaleAddress;
};

inline TScaleObj ScaleOf(const TExpectedScale& scale) {
    TScaleObj object;
    object.Rec.ScaleNumb = scale.number;
    object.Rec.ScaleName = FromUtf8(scale.name);
    object.Rec.TCPAddress = scale.address;
    object.Rec.TCPPort = static_cast<std::uint16_t>(scale.port);
    object.Rec.ScaleType = scale.type;
    object.Rec.CommType = static_cast<std::uint8_t>(scale.commType);
    object.Rec.BaudRate = static_cast<std::uint8_t>(scale.baudRate);
    object.Rec.Encoding = scale.encoding;
    object.Rec.ScaleAddr = static_cast<std::uint8_t>(scale.scaleAddress);
    return object;
}

inline void ExpectScale(const TScaleRec& rec, const TExpectedScale& expected) {
    EXPECT_EQ(rec.ScaleNumb, expected.number);
    EXPECT_EQ(ToUtf8(rec.ScaleName.View()), expected.name);
    EXPECT_EQ(rec.TCPAddress.View(), expected.address);
    EXPECT_EQ(rec.TCPPort, expected.port);
    EXPECT_EQ(rec.ScaleType, expected.type);
    EXPECT_EQ(rec.CommType, expected.commType);
    EXPECT_EQ(rec.BaudRate, expected.baudRate);
    EXPECT_EQ(rec.Encoding, expected.encoding);
    EXPECT_EQ(rec.ScaleAddr, expected.scaleAddress);
}

}  // namespace tolvane::test

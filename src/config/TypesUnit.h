#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace tolvane {

// A text of at most N single-byte characters inside a plain record; a longer one is cut when
// stored.
template <std::uint8_t N>
struct TShortText {
    std::uint8_t length = 0;
    char characters[N] = {};

    TShortText() = default;
    TShortText(std::string_view text) { *this = text; }  // NOLINT: any text can be stored
    TShortText& operator=(std::string_view text) {
        length = static_cast<std::uint8_t>(text.size() < N ? text.size() : N);
        std::copy_n(text.begin(), length, characters);
        return *this;
    }
    std::string_view View() const { return {characters, length}; }
    std::string Str() const { return std::string(View()); }
    bool Empty() const { return length == 0; }
    friend bool operator==(const TShortText& a, const TShortText& b) {
        return a.View() == b.View();
    }
};

// Scale model codes as the configuration file holds them; the dialog shows no model for any other
// code.
inline constexpr std::int32_t kScaleTypeEvl = 16;
inline constexpr std::int32_t kScaleTypeEts = 5000;
inline constexpr std::int32_t kScaleTypeS300 = 300;

inline constexpr std::uint8_t kCommSerial = 0;
inline constexpr std::uint8_t kCommTcp = 1;
inline constexpr std::uint8_t kCommUdp = 2;

// By TScaleRec::CommType.
constexpr bool IsNetworkConnection(std::int32_t commType) {
    return commType == kCommTcp || commType == kCommUdp;
}
constexpr bool IsKnownConnection(std::int32_t commType) {
    return commType == kCommSerial || IsNetworkConnection(commType);
}

// One configured scale.
struct TScaleRec {
    std::int32_t ScaleNumb = 0;  // the number that the user knows the scale by, 1 to 60
    TShortText<50> ScaleName;    // code page 1251
    TShortText<15> TCPAddress;   // dotted IPv4 address, or a serial port's name ("COM1")
    std::uint16_t TCPPort = 0;   // 0 marks an empty slot
    bool Checked = false;        // takes part in runs
    std::uint8_t BaudRate = 0;   // index into kSerialSpeeds
    std::int32_t ScaleType = 0;  // kScaleTypeEvl, kScaleTypeEts, kScaleTypeS300
    std::uint8_t CommType = 0;   // kCommSerial, kCommTcp, kCommUdp
    std::int32_t Encoding = 0;   // code table of article texts, 0 to 2
    std::uint8_t ScaleAddr = 0;  // address on a serial line

    friend bool operator==(const TScaleRec&, const TScaleRec&) = default;
};
static_assert(std::is_trivially_copyable_v<TScaleRec>);

// An item of a list of scales.
struct TScaleObj {
    TScaleRec Rec;
};

// One article as it is parsed back from its article line; texts in code page 1251.
struct TPLUD {
    std::int32_t ScaleNumber = 0;    // the article's number in the scales
    std::int32_t ArticleNumber = 0;  // the article's number in the host's database
    std::string Barcode;
    std::int32_t UnitCode = 0;
    std::int32_t Reserved4 = 0;
    std::int32_t Reserved5 = 0;
    std::int32_t PriceHundredths = 0;
    std::int32_t Reserved7 = 0;  // weight field or tare number for the scale; the builder writes 0
    std::int32_t BestBeforeDays = 0;
    std::int32_t Reserved16 = 0;
    bool WholeUnits = false;
    std::string LabelName1;
    std::string LabelName2;
    std::string Comment1;
    std::string Comment2;
    std::string Comment3;
    std::string ShipmentNumber;
};

}  // namespace tolvane

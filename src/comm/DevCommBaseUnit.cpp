#include "comm/DevCommBaseUnit.h"

#include <algorithm>

namespace tolvane {
namespace {

// The shift between code page 1251 and the DOS tables, and where the second Russian block starts.
constexpr unsigned kShift = 64;
constexpr unsigned kBlockGap = 48;

constexpr std::uint8_t ToPc855(unsigned code) {
    if (code == 0) return ' ';
    return static_cast<std::uint8_t>(code >= 192 ? code - kShift : code);
}

constexpr std::uint8_t ToPc866(unsigned code) {
    if (code == 0) return ' ';
    if (code <= 129) return static_cast<std::uint8_t>(code);
    const unsigned shifted = code - kShift;
    return static_cast<std::uint8_t>(shifted > 175 ? shifted + kBlockGap : shifted);
}

constexpr std::uint8_t ToTable(std::uint8_t code, std::uint8_t codeTable) {
    if (codeTable == kCodeTablePc855) return ToPc855(code);
    if (codeTable == kCodeTablePc866) return ToPc866(code);
    return code;
}

constexpr std::uint8_t FromTable(std::uint8_t byte, std::uint8_t codeTable) {
    unsigned code = byte;
    if (codeTable == kCodeTablePc855 && byte >= 128) code = byte + kShift;
    if (codeTable == kCodeTablePc866) {
        if (byte >= 224 && byte <= 239) code = byte + kShift - kBlockGap;
        if (byte >= 128 && byte <= 175) code = byte + kShift;
    }
    return static_cast<std::uint8_t>(code);
}

}  // namespace

void TDevCommBase::ClearBuffer(TCmdBuffer& Buf) {
    Buf.clear();
}

void TDevCommBase::AppendByte(std::uint8_t B, TCmdBuffer& Buf) {
    Buf.push_back(B);
}

void TDevCommBase::TextToBytes(std::string_view Text, std::int32_t Len, std::uint8_t CodeTable,
                               TCmdBuffer& Buf) {
    if (Len < 1) return;
    const auto length = static_cast<std::size_t>(Len);
    Buf.reserve(Buf.size() + length);
    const std::string_view kept = Text.substr(0, length);
    for (const char c : kept)
        Buf.push_back(ToTable(static_cast<std::uint8_t>(c), CodeTable));
    Buf.insert(Buf.end(), length - kept.size(), ' ');
}

std::string TDevCommBase::BytesToText(const TCmdBuffer& Buf, std::uint8_t Start, std::uint8_t Count,
                                      std::uint8_t CodeTable) {
    const std::size_t end = std::min<std::size_t>(Buf.size(), std::size_t{Start} + Count);
    std::string text;
    for (std::size_t i = Start; i < end; ++i) {
        if (Buf[i] != 0) text += static_cast<char>(FromTable(Buf[i], CodeTable));
    }
    return text;
}

std::uint32_t TDevCommBase::MakeLongBE(std::uint8_t B1, std::uint8_t B2, std::uint8_t B3,
                                       std::uint8_t B4) {
    return std::uint32_t{B1} << 24 | std::uint32_t{B2} << 16 | std::uint32_t{B3} << 8 | B4;
}

}  // namespace tolvane

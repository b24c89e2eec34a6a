#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane {

// Every command and every reply travels as one of these.
using TCmdBuffer = std::vector<std::uint8_t>;

// Code tables for texts in a scale.
inline constexpr std::uint8_t kCodeTableRaw = 0;    // "WIN-1252": bytes as they are
inline constexpr std::uint8_t kCodeTablePc855 = 1;  // "PC-855 (DOS CYR)"
inline constexpr std::uint8_t kCodeTablePc866 = 2;  // "PC-866 (RUS CYR)"

// Byte utilities of the channels and the scale driver.
class TDevCommBase {
public:
    static void ClearBuffer(TCmdBuffer& Buf);
    static void AppendByte(std::uint8_t B, TCmdBuffer& Buf);
    // Appends exactly Len bytes: Text (code page 1251) cut or padded with spaces, each character
    // through the code table. Len below 1 appends nothing.
    static void TextToBytes(std::string_view Text, std::int32_t Len, std::uint8_t CodeTable,
                            TCmdBuffer& Buf);
    // Count bytes from index Start through the code table; zero bytes and indexes past the end are
    // dropped.
    static std::string BytesToText(const TCmdBuffer& Buf, std::uint8_t Start, std::uint8_t Count,
                                   std::uint8_t CodeTable);
    // B1 is the most significant byte.
    static std::uint32_t MakeLongBE(std::uint8_t B1, std::uint8_t B2, std::uint8_t B3,
                                    std::uint8_t B4);
};

// Result codes of ReadAnswer.
inline constexpr std::int32_t kReadOk = 0;
inline constexpr std::int32_t kReadWrongAnswer = 1;
inline constexpr std::int32_t kReadTimeout = 2;
inline constexpr std::int32_t kReadNotConnected = 3;
inline constexpr std::int32_t kReadOtherFailure = 4;

// Thrown and caught inside the channels only. The code is ReadAnswer's result.
class CommException : public std::runtime_error {
public:
    CommException(std::int32_t code, const std::string& message)
        : std::runtime_error(message), ErrorCode(code) {}
    std::int32_t ErrorCode;
};

// A byte channel to one scale. Used by one caller at a time, on the caller's thread. No operation
// lets an error escape: a failure is a false (or a code above 0) and a text in LastError, which is
// meaningful only right after that failure.
class TDevComm : public TDevCommBase {
public:
    TDevComm() = default;
    TDevComm(const TDevComm&) = delete;
    TDevComm& operator=(const TDevComm&) = delete;
    virtual ~TDevComm() = default;

    std::string LastError;

    // A short name for logs: "TCP (10.0.0.5:1001)".
    virtual std::string GetDescription() const = 0;
    virtual bool IsConnected() const = 0;
    // Closes first when open.
    virtual bool Open() = 0;
    virtual void Close() = 0;
    // Writes all bytes at once.
    virtual bool SendData(const TCmdBuffer& Data) = 0;
    // Empties Reply and fills it with one answer, from StartByte to EndByte (0: no such marker;
    // without an end marker it collects until the time-out). Returns one of the codes above.
    virtual std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte, std::uint8_t EndByte,
                                    std::int32_t TimeoutMs) = 0;
};

}  // namespace tolvane

// Prints what the frame of a request with a text of 63 bytes costs to make, and to take apart when
// the same bytes come as a reply, beside copying and summing those bytes.

#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <string_view>

#include "scale/ScaleFrame.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"

namespace tolvane::bench {
namespace {

constexpr std::uint8_t kAddress = 0;
constexpr std::uint8_t kCommand = 0x4C;
constexpr std::int32_t kTextLength = 63;
constexpr double kAtMost = 6;
constexpr int kRounds = 101;

int sink = 0;

// Article 300, parameter 19, the length and the text.
TCmdBuffer TextData(std::string_view text) {
    TCmdBuffer data;
    for (const int byte : {0, 0x2C, 0x01, 19, kTextLength})
        data.push_back(static_cast<std::uint8_t>(byte));
    TDevCommBase::TextToBytes(text, kTextLength, kCodeTableRaw, data);
    return data;
}

// The frame that a scale would send with these data.
TCmdBuffer ReplyWith(const TCmdBuffer& data) {
    TCmdBuffer reply = EncodeRequest(kAddress, kCommand, data);
    reply.front() = kReplyStart;
    return reply;
}

void CopyAndSum(const TCmdBuffer& bytes) {
    const TCmdBuffer copy(bytes);
    sink += std::accumulate(copy.begin(), copy.end(), 0);
}

// Codes of a text in code table 2 begin in the offset state and soon leave it, spaces and digits do
// not leave it, and the last text changes the state at every letter.
struct TText {
    const char* name;
    std::string_view text;
};
constexpr TText kTexts[] = {
    {"a name in code table 2",
     "\x91\xA2\xA8\xAD\xE1\xAA\xA8 \xA2\xE0\xA0\xE2 \xA1\xA5\xA7 \xAA\xAE\xE1"},
    {"digits and spaces", "22012 250 100 12"},
    {"each byte in the other state",
     "\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0"
     "\x01\xF0\x01"
     "\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0"
     "\x01\xF0\x01"
     "\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0\x01\xF0"},
};

void Measure(const TText& text, int times) {
    const TCmdBuffer data = TextData(text.text);
    const TCmdBuffer reply = ReplyWith(data);
    if (DecodeReply(reply, kAddress, kCommand) != data) std::exit(1);
    const auto repeat = [times](const auto& body) {
        return [times, &body] {
            for (int i = 0; i < times; ++i)
                body();
        };
    };
    const auto encode = [&] {
        sink += static_cast<int>(EncodeRequest(kAddress, kCommand, data).size());
    };
    const auto decode = [&] {
        sink += static_cast<int>(DecodeReply(reply, kAddress, kCommand).size());
    };
    const auto copyData = [&] { CopyAndSum(data); };
    const auto both = [&] {
        encode();
        decode();
    };
    const auto copyBoth = [&] {
        copyData();
        copyData();
    };
    std::printf("%s, %d times\n", text.name, times);
    Compare({"encoding", repeat(encode)}, {"copying and summing", repeat(copyData)}, kAtMost,
            kRounds);
    Compare({"decoding", repeat(decode)}, {"copying and summing", repeat(copyData)}, kAtMost,
            kRounds);
    Compare({"encoding and decoding", repeat(both)},
            {"copying and summing twice", repeat(copyBoth)}, kAtMost, kRounds);
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    const int times = tolvane::bench::IsQuick(count, arguments) ? 100 : 5'000;
    for (const tolvane::bench::TText& text : tolvane::bench::kTexts)
        tolvane::bench::Measure(text, times);
    return tolvane::bench::sink == 0 ? 1 : 0;
}

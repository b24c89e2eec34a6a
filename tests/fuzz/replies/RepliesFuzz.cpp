#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "comm/DevCommBaseUnit.h"
#include "config/TypesUnit.h"
#include "scale/DevElicomScaleUnit.h"
#include "scale/ScaleFrame.h"
#include "scale/TextLengths.h"
#include "simulator/Frame.h"
#include "simulator/ScaleCore.h"
#include "tests/fuzz/Fuzz.h"

namespace tolvane {
namespace {

using fuzz::Must;
using fuzz::TInput;

constexpr std::string_view kUnexpectedAnswer = "Unexpected answer from scale. ";

TCmdBuffer BufferOf(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

// A body as the wire carries it, read in the plainest way.
TCmdBuffer PlainBody(std::span<const std::uint8_t> encoded) {
    TCmdBuffer body;
    bool shifted = false;
    for (const std::uint8_t byte : encoded) {
        if (byte == 0x0C || byte == 0x0D)
            shifted = byte == 0x0D;
        else
            body.push_back(static_cast<std::uint8_t>(shifted ? byte - 0x14 : byte));
    }
    return body;
}

// The data of a right reply; nothing when there is anything wrong with it.
std::optional<TCmdBuffer> PlainReply(std::span<const std::uint8_t> reply, std::uint8_t address,
                                     std::uint8_t command) {
    if (reply.size() < 2 || reply.front() != 0x02 || reply.back() != 0x03) return std::nullopt;
    const TCmdBuffer body = PlainBody(reply.subspan(1, reply.size() - 2));
    if (body.size() < 3 || body[0] != address || body[1] != command) return std::nullopt;
    int sum = 0;
    for (std::size_t i = 0; i + 1 < body.size(); ++i)
        sum += body[i];
    if (sum % 256 != body.back()) return std::nullopt;
    return TCmdBuffer(body.begin() + 2, body.end() - 1);
}

std::optional<TCmdBuffer> Decoded(std::span<const std::uint8_t> reply, std::uint8_t address,
                                  std::uint8_t command) {
    try {
        return DecodeReply(reply, address, command);
    } catch (const std::runtime_error& error) {
        Must(std::string_view(error.what()).starts_with(kUnexpectedAnswer),
             "a reply is refused with the usual words");
        return std::nullopt;
    }
}

// Any bytes as a reply.
void TryReply(TInput& input) {
    const std::uint8_t address = input.Byte();
    const std::uint8_t command = input.Byte();
    const auto reply = input.Rest();
    const auto data = Decoded(reply, address, command);
    Must(data == PlainReply(reply, address, command), "a reply means what it plainly means");
    if (!data) return;
    const simulator::TBytes sent = simulator::EncodeReply(address, command, *data);
    Must(Decoded(sent, address, command) == data, "a scale's own form of a reply is read alike");
}

// A request to a scale, and a scale's reply with the same content.
void TryFrames(TInput& input) {
    const std::uint8_t address = input.Byte();
    const std::uint8_t command = input.Byte();
    const std::uint8_t wrong = input.Byte();
    const TCmdBuffer data = BufferOf(input.Bytes(simulator::kLongestBody - 3));
    const TCmdBuffer frame = EncodeRequest(address, command, data);
    simulator::TRequestParser parser;
    const auto frames = parser.Feed(frame);
    Must(frames.size() == 1 && frames[0] == frame && parser.GarbageCount() == 0,
         "a request is one frame on the wire");
    const simulator::TRequest request = simulator::DecodeRequest(frame);
    Must(request.defect == simulator::TDefect::None && request.address == address &&
             request.command == command && request.data == data,
         "a scale reads what was sent");
    Must(Decoded(simulator::EncodeReply(address, command, data), address, command) == data,
         "what a scale replies is read");
    if (wrong == 0) return;
    Must(!Decoded(simulator::EncodeReply(address, command, data, wrong), address, command),
         "a wrong checksum is refused");
    Must(!Decoded(frame, address, command), "a request is no reply");
    const auto other = static_cast<std::uint8_t>(address + wrong);
    Must(!Decoded(simulator::EncodeReply(other, command, data), address, command),
         "another scale's reply is refused");
}

class TPauseClock : public TClock {
public:
    TTimePoint Now() const override { return {}; }
    void Sleep(TMilliseconds pause) override {
        Must(pause > TMilliseconds(0) && pause <= TMilliseconds(200),
             "a pause is as short as told");
    }
};

// Answers with what the input says, or as a virtual scale.
class TInputChannel : public TDevComm {
public:
    explicit TInputChannel(TInput& input) : input_(input) {}
    explicit TInputChannel(TInput& input, simulator::TScaleCore& core)
        : input_(input), core_(&core) {}

    std::string GetDescription() const override { return "the input"; }
    bool IsConnected() const override { return true; }
    bool Open() override { return true; }
    void Close() override {}
    bool SendData(const TCmdBuffer& Data) override {
        ++Sent;
        request_ = simulator::DecodeRequest(Data);
        Must(request_.defect == simulator::TDefect::None, "only well-formed requests are sent");
        reply_.clear();
        if (core_ == nullptr) return true;
        for (const simulator::TSendStep& step : core_->Answer(Data).steps)
            reply_.insert(reply_.end(), step.bytes.begin(), step.bytes.end());
        return true;
    }
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t, std::uint8_t, std::int32_t) override {
        if (core_ != nullptr) {
            Reply = reply_;
            return Reply.empty() ? kReadTimeout : kReadOk;
        }
        const std::uint8_t kind = input_.Byte();
        const auto bytes = input_.Bytes(input_.Byte());
        LastError = "no answer";
        const bool isRight = kind < 0x40;  // a right reply with these data
        Reply = isRight
                    ? simulator::EncodeReply(request_.address, request_.command, BufferOf(bytes))
                    : BufferOf(bytes);
        LastReply = Reply;
        return isRight ? kReadOk : kind % 5;  // kReadOk: whatever the bytes are
    }

    int Sent = 0;
    TCmdBuffer LastReply;

private:
    TInput& input_;
    simulator::TScaleCore* core_ = nullptr;
    simulator::TRequest request_;
    TCmdBuffer reply_;
};

struct TVersion {
    std::int32_t errCode = 0;
    std::int32_t maxPlu = 0;
    std::int32_t mode = 0;
    std::string text;
};

// The fields, each at its place in the reply; what is missing at its end is 0.
void CheckVersion(const TVersion& version, const TCmdBuffer& reply, std::uint8_t address) {
    constexpr std::uint8_t kCommand = 0x48;
    const auto data = PlainReply(reply, address, kCommand);
    Must(data && !data->empty() && data->front() == 0, "only a right reply tells a version");
    const auto at = [&](std::size_t place) { return place < data->size() ? (*data)[place] : 0; };
    std::string text;
    for (std::size_t place = 1; place <= 4; ++place)
        if (at(place) != 0) text += static_cast<char>(at(place));
    Must(version.text == text, "the version is the reply's");
    Must(version.maxPlu == at(9) + 256 * at(10), "the capacity is the reply's");
    Must(version.mode == (at(16) & 3), "the mode is the reply's");
}

// Each command, with replies of any kind.
void TryCommand(TInput& input) {
    TPauseClock clock;
    const std::uint8_t which = input.Byte();
    auto owned = std::make_unique<TInputChannel>(input);
    TInputChannel& channel = *owned;
    TElicomScale scale(std::move(owned), (which & 0x80) != 0, clock);
    scale.Address = input.Byte();
    TVersion version;
    bool done = false;
    switch (which % 4) {
        case 0:
            done = scale.GetVersion(version.errCode, version.maxPlu, version.mode, version.text);
            if (done) CheckVersion(version, channel.LastReply, scale.Address);
            Must(version.maxPlu >= 0 && version.maxPlu <= 0xFFFF, "the capacity is two bytes");
            Must(version.mode >= 0 && version.mode <= 3, "the mode is two bits");
            Must(version.text.size() <= 4, "the version has up to four characters");
            Must(version.text.find('\0') == std::string::npos, "the version has no zero byte");
            break;
        case 1:
            done = scale.SetPrgMode(version.errCode);
            break;
        case 2:
            done = scale.SetWeightMode(version.errCode);
            break;
        default:
            done = scale.SetPriceC(version.errCode, input.Byte(), 1.5, true, 0, 1);
    }
    Must(done == (scale.LastError.empty()), "a command fails with words, and only then");
    Must(!done || version.errCode == 0, "a command that was refused has failed");
    Must(channel.Sent >= 1 && channel.Sent <= 1 + scale.Retries, "a request is repeated as told");
}

// What is written into a scale is what the scale holds.
void TryScale(TInput& input) {
    TPauseClock clock;
    const std::uint8_t kind = input.Byte();
    const auto model = static_cast<simulator::TModel>(kind % 3);
    simulator::TCoreOptions options{.scale = simulator::DefaultProperties(model),
                                    .keepsRequests = false};
    options.scale.address = input.Byte();
    simulator::TScaleCore core(options);
    TElicomScale scale(std::make_unique<TInputChannel>(input, core), false, clock);
    scale.Address = static_cast<std::uint8_t>(options.scale.address);
    constexpr std::array kTypes = {kScaleTypeEvl, kScaleTypeEts, kScaleTypeS300};
    scale.ScaleType = kTypes[kind % 3];
    std::int32_t errCode = 0;
    Must(scale.SetPrgMode(errCode), "a scale goes into programming mode");
    const std::int32_t plu = 1 + static_cast<std::int32_t>(input.Number<std::uint16_t>() % 4000);
    const auto article = [&] {
        const simulator::TScaleState state = core.State();
        const auto found = state.articles.find(plu);
        return found == state.articles.end() ? simulator::TArticle() : found->second;
    };
    if ((kind & 0x80) != 0) {
        const auto price = input.Number<double>();
        const auto weight = input.Number<double>();
        const bool written = scale.SetPrice(errCode, plu, price, weight);
        const bool fits = std::isfinite(price) && price > -0.004 && price < 9999.99;
        if (fits && weight < 0) Must(written, "a price that fits is written");
        if (!written) return Must(!article().price, "a price that is refused changes nothing");
        Must(std::abs(*article().price / 100.0 - price) < 0.00501, "the scale holds the price");
        if (weight >= 0) Must(std::abs(*article().weight - weight) < 0.501, "and the weight");
        return;
    }
    const auto parameter = static_cast<std::int32_t>(input.Below(32));
    const std::uint8_t table = input.Byte() % 3;
    const std::string text = input.RestAsText().substr(0, 255);
    Must(scale.SetParam(errCode, plu, parameter, text, table), "a text is written");
    TCmdBuffer expected;
    const std::string fitted = FitParameter(text, parameter, scale.ScaleType);
    TDevCommBase::TextToBytes(fitted, static_cast<std::int32_t>(fitted.size()), table, expected);
    Must(article().texts[parameter].bytes == expected, "the scale holds the text");
    if (table == kCodeTableRaw)
        Must(
            TDevCommBase::BytesToText(expected, 0, 255, table) ==
                [&] {
                    std::string plain = fitted;
                    std::erase(plain, '\0');
                    return plain;
                }(),
            "a raw text comes back");
}

}  // namespace
}  // namespace tolvane

// A letter for the subject, then its input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tolvane::fuzz::TInput input(data, size);
    switch (input.Byte()) {
        case 'r':
            tolvane::TryReply(input);
            break;
        case 'f':
            tolvane::TryFrames(input);
            break;
        case 'c':
            tolvane::TryCommand(input);
            break;
        case 's':
            tolvane::TryScale(input);
            break;
        default:
            return -1;
    }
    return 0;
}

#include "command/TraceFile.h"

#include <array>
#include <cstddef>
#include <exception>
#include <utility>

#include "comm/DevCommBaseUnit.h"
#include "command/EnglishWords.h"
#include "system/SystemError.h"
#include "system/TemporaryFile.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

// Of the format of capture files.
constexpr std::uint32_t kSectionBlock = 0x0A0D0D0A;
constexpr std::uint32_t kInterfaceBlock = 1;
constexpr std::uint32_t kPacketBlock = 6;
constexpr std::uint32_t kByteOrder = 0x1A2B3C4D;
constexpr std::uint16_t kComment = 1;
constexpr std::uint16_t kInterfaceName = 2;
constexpr std::uint16_t kInterfaceDescription = 3;
constexpr std::uint16_t kPacketFlags = 2;
constexpr std::uint16_t kWritingProgram = 4;
constexpr std::uint32_t kInbound = 1;
constexpr std::uint32_t kOutbound = 2;
constexpr std::uint16_t kLinkTypeUser0 = 147;

// Of the bytes before each packet.
constexpr std::uint8_t kHeaderVersion = 1;
constexpr std::size_t kHeaderLength = 12;
constexpr std::uint8_t kOtherCodeTable = 255;

// An option's length is 16 bits, and no text of ours is nearly as long.
constexpr std::size_t kLongestText = 4000;

// One block: type, length, content and options each filled up to 4 bytes, and the length again.
class TBlock {
public:
    explicit TBlock(std::uint32_t type) {
        Put(type, 4);
        Put(0, 4);
    }
    void Put(std::uint64_t number, int bytes) {
        for (int i = 0; i < bytes; ++i)
            bytes_ += static_cast<char>(static_cast<unsigned char>(number >> (8 * i)));
    }
    void PutPadded(std::string_view bytes) {
        bytes_ += bytes;
        bytes_.resize((bytes_.size() + 3) / 4 * 4);
    }
    void PutOption(std::uint16_t code, std::string_view value) {
        Put(code, 2);
        Put(value.size(), 2);
        PutPadded(value);
    }
    void PutText(std::uint16_t code, std::string_view cp1251) {
        if (!cp1251.empty()) PutOption(code, ToUtf8(cp1251.substr(0, kLongestText)));
    }
    // The block with its end.
    std::string Take() {
        Put(0, 4);
        const std::size_t length = bytes_.size() + 4;
        Put(length, 4);
        for (std::size_t i = 0; i < 4; ++i)
            bytes_[4 + i] = bytes_[bytes_.size() - 4 + i];
        return std::move(bytes_);
    }

private:
    std::string bytes_;
};

std::string SectionBlock() {
    TBlock block(kSectionBlock);
    block.Put(kByteOrder, 4);
    block.Put(1, 2);
    block.Put(0, 2);
    block.Put(UINT64_MAX, 8);  // the section's length is not known
    block.PutText(kWritingProgram, "tolvane");
    return block.Take();
}

std::string InterfaceBlock(const TTracedScale& scale) {
    TBlock block(kInterfaceBlock);
    block.Put(kLinkTypeUser0, 2);
    block.Put(0, 2);
    block.Put(0, 4);  // packets are whole
    std::string name = "scale " + std::to_string(scale.number);
    if (!scale.name.empty()) name += " " + scale.name;
    block.PutText(kInterfaceName, name);
    block.PutText(kInterfaceDescription, scale.link);
    return block.Take();
}

std::string Content(const TTracedScale& scale, const TTracePacket& packet) {
    std::string content = {static_cast<char>(kHeaderVersion), static_cast<char>(scale.commType),
                           static_cast<char>(packet.direction), static_cast<char>(packet.result)};
    for (int shift = 0; shift < 32; shift += 8)
        content += static_cast<char>(static_cast<std::uint32_t>(scale.number) >> shift & 0xFFU);
    const bool known = scale.codeTable >= kCodeTableRaw && scale.codeTable <= kCodeTablePc866;
    content += static_cast<char>(known ? scale.codeTable : kOtherCodeTable);
    content.resize(kHeaderLength);
    content.append(packet.bytes.begin(), packet.bytes.end());
    return content;
}

std::string PacketBlock(std::uint32_t id, const TTracedScale& scale, const TTracePacket& packet,
                        std::chrono::system_clock::time_point when) {
    using std::chrono::microseconds;
    const auto time = static_cast<std::uint64_t>(
        std::chrono::duration_cast<microseconds>(when.time_since_epoch()).count());
    const std::string content = Content(scale, packet);
    TBlock block(kPacketBlock);
    block.Put(id, 4);
    block.Put(time >> 32U, 4);
    block.Put(time, 4);
    block.Put(content.size(), 4);  // captured
    block.Put(content.size(), 4);  // on the wire
    block.PutPadded(content);
    block.PutText(kComment, packet.failure);
    block.Put(kPacketFlags, 2);
    block.Put(4, 2);
    block.Put(packet.direction == TTraceDirection::Request ? kOutbound : kInbound, 4);
    return block.Take();
}

}  // namespace

TTraceFile::TTraceFile(const std::filesystem::path& file, TTimeOfDaySource now)
    : name_(PathText(file)), now_(std::move(now)) {
    try {
        file_.emplace(file);
        file_->Write(SectionBlock());
    } catch (const std::exception& error) {
        throw TFailure("The trace file " + name_ +
                       " cannot be made: " + InEnglish(FailureText(error)));
    }
}

std::uint32_t TTraceFile::AddScale(const TTracedScale& scale) {
    const std::lock_guard lock(mutex_);
    for (std::size_t i = 0; i < scales_.size(); ++i) {
        if (scales_[i] == scale) return static_cast<std::uint32_t>(i);
    }
    scales_.push_back(scale);
    Write(InterfaceBlock(scale));
    return static_cast<std::uint32_t>(scales_.size() - 1);
}

void TTraceFile::Add(std::uint32_t scale, const TTracePacket& packet) {
    const std::lock_guard lock(mutex_);
    // The clock is asked here so that times rise from packet to packet.
    if (file_) Write(PacketBlock(scale, scales_.at(scale), packet, now_()));
}

void TTraceFile::Write(std::string_view block) {
    if (!file_) return;
    try {
        file_->Write(block);
    } catch (const std::exception& error) {
        failure_ = "The trace ends early, as " + name_ +
                   " cannot be written: " + InEnglish(FailureText(error));
        file_.reset();
    }
}

std::optional<std::string> TTraceFile::TakeFailure() {
    const std::lock_guard lock(mutex_);
    return std::exchange(failure_, std::nullopt);
}

}  // namespace tolvane

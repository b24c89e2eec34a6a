#include "command/ScaleList.h"

#include <optional>
#include <string_view>

#include "command/ScalePlace.h"
#include "config/ScaleTable.h"
#include "config/SerialSpeeds.h"
#include "text/Cp1251.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

constexpr std::int32_t kMostNumber = 65535;
constexpr std::size_t kLongestAddress = sizeof(TScaleRec::TCPAddress.characters);
constexpr std::int32_t kLastSerialPort = 999;

// What is not such a name is COM1 for the driver, or a port of other digits.
bool IsSerialPort(std::string_view address) {
    if (!EqualIgnoringCase(address.substr(0, kSerialPrefix.size()), kSerialPrefix)) return false;
    address.remove_prefix(kSerialPrefix.size());
    const auto number = ParseInteger(address);
    return number && *number >= 1 && *number <= kLastSerialPort &&
           std::to_string(*number) == address;
}

// One section as its file spells it.
class TSectionCheck {
public:
    TSectionCheck(const TIniDocument& document, int slot, const TScaleRec& rec)
        : document_(document), section_("SCALE" + std::to_string(slot)), scale_{.rec = rec} {}

    bool IsThere() const { return document_.HasSection(section_); }
    TListedScale Check() {
        CheckNumber("CommType", "kind of connection", kCommSerial, kCommUdp, "choose one");
        CheckNumber("ScaleNumb", "number", 1, kMostNumber, "give it a number");
        CheckNumber("ScaleType", "model", 0, kMostNumber, "choose the model");
        CheckNumber("Encoding", "code table", 0, kMostNumber, "choose the code table");
        CheckAddress();
        if (scale_.rec.CommType == kCommTcp)
            CheckNumber("TCPPort", "port", 1, 65535, "correct the port");
        if (scale_.rec.CommType == kCommSerial) {
            CheckNumber("ScaleAddr", "address on the line", 0, 255, "correct the address");
            CheckNumber("BaudRate", "speed", 0, 255, "choose the speed");
        }
        if (scale_.rec.TCPPort == 0)
            Fail("its port is 0, which marks a scale that is not in use", "correct the port");
        return scale_;
    }

private:
    // The first fault is told.
    void Fail(std::string fault, std::string cure) {
        if (!scale_.IsUsable()) return;
        scale_.fault = std::move(fault);
        scale_.cure = std::move(cure);
    }
    void CheckAddress() {
        const std::string address = document_.ReadText(section_, "TCPAddress", "");
        if (address.empty())
            Fail("it has no address", "enter the address, or the serial port");
        else if (address.size() > kLongestAddress)
            Fail("its address \"" + address + "\" is longer than " +
                     std::to_string(kLongestAddress) + " characters",
                 "correct the address");
        else if (scale_.rec.CommType == kCommSerial && !IsSerialPort(address))
            Fail("its address \"" + address + "\" is no serial port",
                 "enter COM1, COM2 and so on, without a blank or a colon");
    }
    // A key that is missing or empty has its default.
    void CheckNumber(std::string_view key, const std::string& name, std::int32_t lowest,
                     std::int32_t highest, const std::string& cure) {
        const std::string text = document_.ReadText(section_, key, "");
        if (text.empty()) return;
        const std::optional<std::int32_t> number = ParseInteger(text);
        if (number && *number >= lowest && *number <= highest) return;
        Fail("its " + name + " \"" + text + "\" is not a number from " + std::to_string(lowest) +
                 " to " + std::to_string(highest),
             cure);
    }

    const TIniDocument& document_;
    std::string section_;
    TListedScale scale_;
};

}  // namespace

std::vector<TListedScale> ListedScales(const TIniDocument& document) {
    TScaleTable table;
    table.Load(document);
    std::vector<TListedScale> scales;
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        TSectionCheck section(document, slot, table[slot]);
        if (section.IsThere()) scales.push_back(section.Check());
    }
    return scales;
}

std::vector<TScaleRec> RecordsOf(const std::vector<TListedScale>& scales) {
    std::vector<TScaleRec> records;
    records.reserve(scales.size());
    for (const TListedScale& scale : scales)
        records.push_back(scale.rec);
    return records;
}

std::vector<TScaleRec> UsableOf(const std::vector<TListedScale>& scales) {
    std::vector<TScaleRec> records;
    for (const TListedScale& scale : scales)
        if (scale.IsUsable()) records.push_back(scale.rec);
    return records;
}

std::string ConnectionName(const TScaleRec& rec) {
    const std::string address = ToUtf8(rec.TCPAddress.View());
    switch (rec.CommType) {
        case kCommSerial: {
            const TSerialSpeed* const speed = SerialSpeed(rec.BaudRate);
            return address + ", " + (speed ? std::to_string(speed->bitsPerSecond) : "?") +
                   " bit/s, address " + std::to_string(rec.ScaleAddr);
        }
        case kCommTcp:
            return "TCP " + address + ":" + std::to_string(rec.TCPPort);
        case kCommUdp:
            return "UDP " + address;
        default:
            return "unknown";
    }
}

}  // namespace tolvane

#include "config/ScaleTable.h"

#include <string>

#include "config/IniDocument.h"

namespace tolvane {

namespace {

constexpr std::string_view kNumberKey = "ScaleNumb";
constexpr std::string_view kNameKey = "ScaleName";
constexpr std::string_view kAddressKey = "TCPAddress";
constexpr std::string_view kPortKey = "TCPPort";
constexpr std::string_view kCheckedKey = "Checked";
constexpr std::string_view kBaudRateKey = "BaudRate";
constexpr std::string_view kTypeKey = "ScaleType";
constexpr std::string_view kEncodingKey = "Encoding";
constexpr std::string_view kSerialAddressKey = "ScaleAddr";
constexpr std::string_view kCommTypeKey = "CommType";

constexpr std::int32_t kDefaultPort = 1001;
constexpr std::int32_t kDefaultEncoding = 2;

std::string SectionName(int slot) {
    return "SCALE" + std::to_string(slot);
}

void LoadSlot(TScaleRec& rec, int slot, const TIniDocument& document) {
    const std::string section = SectionName(slot);
    rec.ScaleName = "";
    rec.TCPAddress = "";
    rec.TCPPort = 0;
    if (!document.HasSection(section)) return;
    const auto integer = [&](std::string_view key, std::int32_t otherwise) {
        return document.ReadInteger(section, key, otherwise);
    };
    rec.ScaleNumb = integer(kNumberKey, slot);
    rec.ScaleName = document.ReadText(section, kNameKey, "SCALE " + std::to_string(slot));
    rec.TCPAddress = document.ReadText(section, kAddressKey, "");
    rec.TCPPort = static_cast<std::uint16_t>(integer(kPortKey, kDefaultPort));
    rec.Checked = document.ReadBoolean(section, kCheckedKey, true);
    rec.BaudRate = static_cast<std::uint8_t>(integer(kBaudRateKey, 0));
    rec.ScaleType = integer(kTypeKey, 0);
    rec.Encoding = integer(kEncodingKey, kDefaultEncoding);
    rec.ScaleAddr = static_cast<std::uint8_t>(integer(kSerialAddressKey, 0));
    const std::int32_t commType = integer(kCommTypeKey, 0);
    if (IsKnownConnection(commType)) rec.CommType = static_cast<std::uint8_t>(commType);
}

}  // namespace

void TScaleTable::Load(const TIniDocument& document) {
    for (int slot = 1; slot <= kScaleSlots; ++slot)
        LoadSlot((*this)[slot], slot, document);
}

void TScaleTable::Save(TIniDocument& document) const {
    for (int slot = 1; slot <= kScaleSlots; ++slot)
        SaveSlot(slot, document);
}

void TScaleTable::SaveSlot(int slot, TIniDocument& document) const {
    const TScaleRec& rec = (*this)[slot];
    const std::string section = SectionName(slot);
    if (!IsInUse(rec)) {
        document.EraseSection(section);
        return;
    }
    document.WriteInteger(section, kNumberKey, rec.ScaleNumb);
    document.WriteText(section, kNameKey, rec.ScaleName.View());
    document.WriteText(section, kAddressKey, rec.TCPAddress.View());
    document.WriteInteger(section, kPortKey, rec.TCPPort);
    document.WriteBoolean(section, kCheckedKey, rec.Checked);
    document.WriteInteger(section, kBaudRateKey, rec.BaudRate);
    document.WriteInteger(section, kTypeKey, rec.ScaleType);
    document.WriteInteger(section, kEncodingKey, rec.Encoding);
    document.WriteInteger(section, kSerialAddressKey, rec.ScaleAddr);
    if (IsKnownConnection(rec.CommType)) document.WriteInteger(section, kCommTypeKey, rec.CommType);
}

bool IsInUse(const TScaleRec& rec) {
    return rec.TCPPort != 0 && !rec.ScaleName.Empty() && !rec.TCPAddress.Empty();
}

bool IsUsableForRuns(const TScaleRec& rec) {
    return rec.TCPPort != 0 && !rec.TCPAddress.Empty();
}

}  // namespace tolvane

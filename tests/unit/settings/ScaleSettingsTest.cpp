#include "settings/ScaleSettings.h"

#include <gtest/gtest.h>

#include "tests/support/scales/TestScales.h"

namespace tolvane::test {
namespace {

using TNumbers = std::vector<std::int32_t>;

TScaleSettings NetworkSettings() {
    TScaleSettings settings = SettingsOfNewScale({"COM1"});
    settings.transport = TTransport::Tcp;
    settings.port = "100";
    settings.ipAddress = "10 .0  .0  .7  ";
    return settings;
}

TScaleSettings SerialSettings() {
    TScaleSettings settings = SettingsOfNewScale({"COM1", "COM3"});
    settings.serialPort = 1;
    return settings;
}

// An ETS that takes no part in runs, with code table 1.
TScaleRec Edited(TScaleRec rec) {
    rec.Checked = false;
    rec.ScaleType = kScaleTypeEts;
    rec.Encoding = 1;
    return rec;
}

TScaleRec EditedNetworkScale() {
    return Edited(NetworkScale(3, "Месна витрина"_cp1251, "192.168.1.10", 100));
}

TScaleRec EditedSerialScale() {
    TScaleRec rec = Edited(SerialScale(3, "Месна витрина"_cp1251, "COM3"));
    rec.BaudRate = 2;
    rec.ScaleAddr = 17;
    return rec;
}

}  // namespace

TEST(ScaleSettingsTest, RulesOf_SerialEnablesTheSerialControlsAndEmptiesThePort) {
    const TTransportRules rules = RulesOf(TTransport::Serial);
    EXPECT_TRUE(rules.serialControls);
    EXPECT_FALSE(rules.ipControls);
    EXPECT_FALSE(rules.portField);
    EXPECT_EQ(rules.portText, "");
}

TEST(ScaleSettingsTest, RulesOf_TcpEnablesAddressAndPortAndResetsThePortTo100) {
    const TTransportRules rules = RulesOf(TTransport::Tcp);
    EXPECT_FALSE(rules.serialControls);
    EXPECT_TRUE(rules.ipControls);
    EXPECT_TRUE(rules.portField);
    EXPECT_EQ(rules.portText, "100");
}

TEST(ScaleSettingsTest, RulesOf_UdpEnablesTheAddressOnlyAndResetsThePortTo1001) {
    const TTransportRules rules = RulesOf(TTransport::Udp);
    EXPECT_FALSE(rules.serialControls);
    EXPECT_TRUE(rules.ipControls);
    EXPECT_FALSE(rules.portField);
    EXPECT_EQ(rules.portText, "1001");
}

TEST(ScaleSettingsTest, SettingsOfNewScale_StartsWithTheDefaults) {
    const TScaleSettings settings = SettingsOfNewScale({"COM1", "COM2"});
    EXPECT_EQ(settings.number, 1);
    EXPECT_EQ(settings.numberBefore, 0);
    EXPECT_EQ(settings.name, "");
    EXPECT_EQ(settings.type, 0);
    EXPECT_EQ(kEncodingNames[static_cast<std::size_t>(settings.encoding)], "PC-866 (RUS CYR)");
    EXPECT_EQ(settings.transport, TTransport::Serial);
    EXPECT_EQ(settings.scaleAddress, 0);
    EXPECT_EQ(settings.serialPorts, (std::vector<std::string>{"COM1", "COM2"}));
    EXPECT_EQ(settings.serialPort, -1);
    EXPECT_EQ(settings.baudRate, 0);
    EXPECT_EQ(settings.ipAddress, "");
    EXPECT_EQ(settings.port, "1001");
}

TEST(ScaleSettingsTest, SettingsOf_ShowsANetworkScale) {
    const TScaleSettings settings = SettingsOf(EditedNetworkScale(), {"COM1"});
    EXPECT_EQ(settings.number, 3);
    EXPECT_EQ(settings.numberBefore, 3);
    EXPECT_EQ(settings.name, "Месна витрина"_cp1251);
    EXPECT_EQ(settings.type, 1);
    EXPECT_EQ(settings.encoding, 1);
    EXPECT_EQ(settings.transport, TTransport::Tcp);
    EXPECT_EQ(settings.ipAddress, "192.168.1.10");
    EXPECT_EQ(settings.port, "100");
    EXPECT_TRUE(settings.serialPorts.empty());
    TScaleRec udp = EditedNetworkScale();
    udp.CommType = kCommUdp;
    EXPECT_EQ(SettingsOf(udp, {}).transport, TTransport::Udp);
}

TEST(ScaleSettingsTest, SettingsOf_ShowsASerialScale) {
    const TScaleSettings settings = SettingsOf(EditedSerialScale(), {"COM1", "COM3"});
    EXPECT_EQ(settings.transport, TTransport::Serial);
    EXPECT_EQ(settings.ipAddress, "");
    EXPECT_EQ(settings.serialPorts, (std::vector<std::string>{"COM1", "COM3"}));
    EXPECT_EQ(settings.serialPort, 1);
    EXPECT_EQ(settings.baudRate, 2);
    EXPECT_EQ(settings.scaleAddress, 17);
}

TEST(ScaleSettingsTest, SettingsOf_ChoosesNoPortThatIsNotThere) {
    EXPECT_EQ(SettingsOf(EditedSerialScale(), {"COM1"}).serialPort, -1);
}

TEST(ScaleSettingsTest, SettingsOf_FindsAStoredPortWhateverItsCase) {
    TScaleRec rec = EditedSerialScale();
    rec.TCPAddress = "com3";
    TScaleSettings settings = SettingsOf(rec, {"COM1", "COM3"});
    EXPECT_EQ(settings.serialPort, 1);
    // The name is stored as the computer has it.
    ApplySettings(settings, rec);
    EXPECT_EQ(rec.TCPAddress.View(), "COM3");
    EXPECT_EQ(SettingsOf(rec, {"com1", "com3"}).serialPort, 1);
    // A part of a name is another port.
    EXPECT_EQ(SettingsOf(rec, {"com30", "com"}).serialPort, -1);
}

TEST(ScaleSettingsTest, SettingsOf_MakesANegativeNumberPositive) {
    TScaleRec rec = EditedNetworkScale();
    rec.ScaleNumb = -5;
    EXPECT_EQ(SettingsOf(rec, {}).number, 5);
    EXPECT_EQ(SettingsOf(rec, {}).numberBefore, 5);
    rec.ScaleNumb = INT32_MIN;
    EXPECT_EQ(SettingsOf(rec, {}).number, INT32_MAX);
}

TEST(ScaleSettingsTest, SettingsOf_AnUnknownEncodingIsPc866) {
    TScaleRec rec = EditedNetworkScale();
    for (const std::int32_t encoding : {9, 4, -1}) {
        rec.Encoding = encoding;
        EXPECT_EQ(SettingsOf(rec, {}).encoding, 2) << encoding;
    }
}

TEST(ScaleSettingsTest, SettingsOf_Encoding3IsNoChoiceAndStaysWhenNoneIsMade) {
    TScaleRec rec = EditedNetworkScale();
    rec.Encoding = 3;
    const TScaleSettings settings = SettingsOf(rec, {});
    EXPECT_EQ(settings.encoding, -1);
    ApplySettings(settings, rec);
    EXPECT_EQ(rec.Encoding, 3);
}

TEST(ScaleSettingsTest, SettingsOf_EachTypeHasItsChoiceAndOthersTheFirst) {
    TScaleRec rec = EditedNetworkScale();
    for (const auto& [code, choice] : {std::pair{16, 0}, {5000, 1}, {300, 2}, {7, 0}}) {
        rec.ScaleType = code;
        EXPECT_EQ(SettingsOf(rec, {}).type, choice) << code;
    }
}

TEST(ScaleSettingsTest, CheckSettings_RefusesTheNumberOfAnotherScale) {
    TScaleSettings settings = NetworkSettings();
    settings.number = 2;
    const TSettingsFault fault = CheckSettings(settings, TNumbers{1, 2});
    EXPECT_EQ(fault.field, TSettingsField::Number);
    EXPECT_FALSE(fault.isError);
    EXPECT_EQ(fault.text, "Такъв номер на везна вече съществува.\r\nМоля променете го."_cp1251);
}

TEST(ScaleSettingsTest, CheckSettings_EditingWithoutChangingTheNumberPasses) {
    TScaleSettings settings = SettingsOf(EditedNetworkScale(), {});
    EXPECT_TRUE(CheckSettings(settings, TNumbers{1, 2, 3}).text.empty());
}

TEST(ScaleSettingsTest, CheckSettings_EditingToAnotherListedScalesNumberFails) {
    TScaleSettings settings = SettingsOf(EditedNetworkScale(), {});
    settings.number = 2;
    EXPECT_EQ(CheckSettings(settings, TNumbers{1, 2, 3}).field, TSettingsField::Number);
    settings.number = 4;
    EXPECT_TRUE(CheckSettings(settings, TNumbers{1, 2, 3}).text.empty());
}

TEST(ScaleSettingsTest, CheckSettings_RefusesNumberZeroOnlyBesideListedScales) {
    TScaleSettings settings = NetworkSettings();
    settings.number = 0;
    EXPECT_EQ(CheckSettings(settings, TNumbers{7}).field, TSettingsField::Number);
    EXPECT_TRUE(CheckSettings(settings, TNumbers{}).text.empty());
}

TEST(ScaleSettingsTest, CheckSettings_LooksAtNumberThenPortThenAddress) {
    TScaleSettings settings = NetworkSettings();
    settings.port = "x";
    settings.ipAddress = "";
    EXPECT_EQ(CheckSettings(settings, TNumbers{1}).field, TSettingsField::Number);
    settings.number = 2;
    EXPECT_EQ(CheckSettings(settings, TNumbers{1}).field, TSettingsField::Port);
    settings.port = "1";
    EXPECT_EQ(CheckSettings(settings, TNumbers{1}).field, TSettingsField::IpAddress);
}

TEST(ScaleSettingsTest, CheckSettings_RefusesWhatIsNoPort) {
    for (const char* port : {"", "x", "-1", "65536", "1001x", "99999999999"}) {
        TScaleSettings settings = NetworkSettings();
        settings.port = port;
        const TSettingsFault fault = CheckSettings(settings, {});
        EXPECT_EQ(fault.text, "Invalid port number.") << port;
        EXPECT_FALSE(fault.isError);
    }
    for (const char* port : {"0", "1", "65535", " 100 "}) {
        TScaleSettings settings = NetworkSettings();
        settings.port = port;
        EXPECT_TRUE(CheckSettings(settings, {}).text.empty()) << port;
    }
}

TEST(ScaleSettingsTest, CheckSettings_RefusesAnAddressWithBlankGroups) {
    for (const char* address : {"   .   .   .   ", "10 .0  .   .7  ", "", "256.1  .1  .1  ",
                                "1 2.1  .1  .1  ", "a.b.c.d", "1.2.-3.4"}) {
        TScaleSettings settings = NetworkSettings();
        settings.ipAddress = address;
        const TSettingsFault fault = CheckSettings(settings, {});
        EXPECT_EQ(fault.text, "Invalid IP Address.") << address;
        EXPECT_TRUE(fault.isError);
        EXPECT_EQ(settings.ipAddress, address);
    }
}

TEST(ScaleSettingsTest, CheckSettings_RewritesTheAddressWithoutLeadingZeros) {
    TScaleSettings settings = NetworkSettings();
    settings.ipAddress = "192.168.001.010";
    EXPECT_TRUE(CheckSettings(settings, {}).text.empty());
    EXPECT_EQ(settings.ipAddress, "192.168.1.10");
    settings.transport = TTransport::Udp;
    settings.ipAddress = "  1.2  . 3 .000";
    EXPECT_TRUE(CheckSettings(settings, {}).text.empty());
    EXPECT_EQ(settings.ipAddress, "1.2.3.0");
}

TEST(ScaleSettingsTest, CheckSettings_SerialNeedsAChosenPort) {
    TScaleSettings settings = SerialSettings();
    EXPECT_TRUE(CheckSettings(settings, {}).text.empty());
    settings.serialPort = -1;
    EXPECT_EQ(CheckSettings(settings, {}).text, "Com port not selected.");
    settings.serialPorts.clear();
    const TSettingsFault fault = CheckSettings(settings, {});
    EXPECT_EQ(fault.text, "Com port not selected.");
    EXPECT_EQ(fault.field, TSettingsField::SerialPort);
    EXPECT_FALSE(fault.isError);
}

TEST(ScaleSettingsTest, CheckSettings_SerialLooksAtNoPortNumberAndNoAddress) {
    TScaleSettings settings = SerialSettings();
    settings.port = "";
    settings.ipAddress = "   .   .   .   ";
    EXPECT_TRUE(CheckSettings(settings, {}).text.empty());
}

TEST(SpinLimitsTest, ValueOf_StaysWithinTheLimits) {
    const TSpinLimits numbers{1, 60, {}};
    EXPECT_EQ(numbers.ValueOf("7"), 7);
    EXPECT_EQ(numbers.ValueOf("61"), 60);
    EXPECT_EQ(numbers.ValueOf(""), 1);
    EXPECT_EQ(numbers.ValueOf("x"), 1);
    EXPECT_EQ(numbers.ValueOf("-3"), 1);
    EXPECT_EQ(numbers.ValueOf("0"), 0);
    const TSpinLimits addresses{0, 255, {}};
    EXPECT_EQ(addresses.ValueOf("999"), 255);
    EXPECT_EQ(addresses.ValueOf(""), 0);
}

TEST(SpinLimitsTest, ValueOf_TakesTheKeptNumberAndNoOtherBeyondTheLimits) {
    const TSpinLimits numbers{1, 60, 75};
    EXPECT_EQ(numbers.ValueOf("75"), 75);
    EXPECT_EQ(numbers.ValueOf("075"), 75);
    EXPECT_EQ(numbers.ValueOf("74"), 60);
    EXPECT_EQ(numbers.ValueOf("76"), 60);
    EXPECT_EQ(numbers.ValueOf("12"), 12);
    EXPECT_EQ(numbers.ValueOf(""), 1);
    EXPECT_EQ((TSpinLimits{1, 60, INT32_MAX}.ValueOf("2147483647")), INT32_MAX);
}

TEST(SpinLimitsTest, Nearest_KeepsZeroOnlyWhereItIsAllowed) {
    EXPECT_EQ((TSpinLimits{1, 60, {}}.Nearest(0)), 1);
    EXPECT_EQ((TSpinLimits{1, 60, 0}.Nearest(0)), 0);
    EXPECT_EQ((TSpinLimits{0, 255, {}}.Nearest(0)), 0);
}

TEST(ScaleSettingsTest, NewScale_TcpWithoutANameGetsTheDefaultName) {
    TScaleSettings settings = NetworkSettings();
    settings.number = 2;
    settings.type = 1;
    const TScaleRec rec = NewScale(settings);
    EXPECT_EQ(rec.ScaleName.View(), "(ETS) - 10.0.0.7 (2)");
    EXPECT_EQ(rec.ScaleNumb, 2);
    EXPECT_EQ(rec.TCPAddress.View(), "10.0.0.7");
    EXPECT_EQ(rec.TCPPort, 100);
    EXPECT_TRUE(rec.Checked);
    EXPECT_EQ(rec.ScaleType, 5000);
    EXPECT_EQ(rec.CommType, 1);
    EXPECT_EQ(rec.Encoding, 2);
}

TEST(ScaleSettingsTest, NewScale_SerialWithoutPortsIsCom1) {
    TScaleSettings settings = SettingsOfNewScale({});
    settings.baudRate = 4;
    settings.scaleAddress = 255;
    settings.type = 2;
    const TScaleRec rec = NewScale(settings);
    EXPECT_EQ(rec.TCPAddress.View(), "COM1");
    EXPECT_EQ(rec.CommType, 0);
    EXPECT_EQ(rec.BaudRate, 4);
    EXPECT_EQ(rec.ScaleAddr, 255);
    EXPECT_EQ(rec.TCPPort, 1001);
    EXPECT_EQ(rec.ScaleName.View(), "(SI) - COM1 (1)");
}

TEST(ScaleSettingsTest, NewScale_KeepsAGivenNameAndCutsItAt50Characters) {
    TScaleSettings settings = SerialSettings();
    settings.name = std::string(60, 'x');
    EXPECT_EQ(NewScale(settings).ScaleName.View(), std::string(50, 'x'));
    EXPECT_EQ(NewScale(settings).TCPAddress.View(), "COM3");
}

TEST(ScaleSettingsTest, NewScale_APortThatIsNoNumberEndsIt) {
    TScaleSettings settings = SerialSettings();
    settings.port = "";
    try {
        NewScale(settings);
        FAIL();
    } catch (const TConversionError& error) {
        EXPECT_STREQ(error.what(), std::string("\"\" не е цяло число."_cp1251).c_str());
    }
}

TEST(ScaleSettingsTest, NewScale_MakesANegativeNumberPositive) {
    TScaleSettings settings = SerialSettings();
    settings.number = -4;
    EXPECT_EQ(NewScale(settings).ScaleNumb, 4);
    EXPECT_EQ(NewScale(settings).ScaleName.View(), "(EVL) - COM3 (4)");
}

TEST(ScaleSettingsTest, NewScale_StoresAPort20304OfOtherTypesAsTyped) {
    TScaleSettings settings = NetworkSettings();
    settings.port = "20304";
    EXPECT_EQ(NewScale(settings).TCPPort, 20304);
}

TEST(ScaleSettingsTest, NewScale_RebuildsTheAddressOfUdp) {
    TScaleSettings settings = NetworkSettings();
    settings.transport = TTransport::Udp;
    settings.ipAddress = "192.168.001.010";
    const TScaleRec rec = NewScale(settings);
    EXPECT_EQ(rec.TCPAddress.View(), "192.168.1.10");
    EXPECT_EQ(rec.CommType, 2);
}

TEST(ScaleSettingsTest, NewScale_KeepsTheLow16BitsOfAnAddressPart) {
    TScaleSettings settings = NetworkSettings();
    settings.ipAddress = "65537.0.0.-1";
    EXPECT_EQ(NewScale(settings).TCPAddress.View(), "1.0.0.65535");
    settings.ipAddress = "-1.-1.-1.-1";
    EXPECT_EQ(NewScale(settings).TCPAddress.View(), "65535.65535.655");
}

TEST(ScaleSettingsTest, ApplySettings_APortThatIsNoNumberIs1001) {
    TScaleRec rec = EditedNetworkScale();
    TScaleSettings settings = SettingsOf(rec, {});
    settings.port = "x";
    ApplySettings(settings, rec);
    EXPECT_EQ(rec.TCPPort, 1001);
}

TEST(ScaleSettingsTest, ApplySettings_AnAddressPartThatIsNoNumberLeavesTheScale) {
    TScaleRec rec = EditedNetworkScale();
    TScaleSettings settings = SettingsOf(rec, {});
    settings.name = "new";
    settings.ipAddress = "10.0..7";
    EXPECT_THROW(ApplySettings(settings, rec), TConversionError);
    EXPECT_EQ(rec.ScaleName.View(), "Месна витрина"_cp1251);
    EXPECT_EQ(rec.TCPAddress.View(), "192.168.1.10");
}

TEST(ScaleSettingsTest, ApplySettings_KeepsTheCheckMarkAndGivesADefaultName) {
    TScaleRec rec = EditedNetworkScale();
    rec.Checked = false;
    TScaleSettings settings = SettingsOf(rec, {});
    settings.name = "";
    ApplySettings(settings, rec);
    EXPECT_FALSE(rec.Checked);
    EXPECT_EQ(rec.ScaleName.View(), "(ETS) - 192.168.1.10 (3)");
}

TEST(ScaleSettingsTest, ApplySettings_FromNetworkToSerialAndBack) {
    TScaleRec rec = EditedNetworkScale();
    TScaleSettings settings = SettingsOf(rec, {});
    settings.transport = TTransport::Serial;
    settings.serialPorts = {"COM7"};
    settings.serialPort = 0;
    settings.baudRate = 3;
    settings.scaleAddress = 9;
    settings.port = "";
    ApplySettings(settings, rec);
    EXPECT_EQ(rec.CommType, 0);
    EXPECT_EQ(rec.TCPAddress.View(), "COM7");
    EXPECT_EQ(rec.BaudRate, 3);
    EXPECT_EQ(rec.ScaleAddr, 9);
    EXPECT_EQ(rec.TCPPort, 1001);
    settings = SettingsOf(rec, {"COM7"});
    settings.transport = TTransport::Udp;
    settings.ipAddress = "1.2.3.4";
    ApplySettings(settings, rec);
    EXPECT_EQ(rec.CommType, 2);
    EXPECT_EQ(rec.TCPAddress.View(), "1.2.3.4");
}

TEST(ScaleSettingsTest, ApplySettings_AnUnknownSpeedStaysWhenNoneIsChosen) {
    TScaleRec rec = EditedSerialScale();
    rec.BaudRate = 9;
    const TScaleSettings settings = SettingsOf(rec, {"COM3"});
    EXPECT_EQ(settings.baudRate, -1);
    ApplySettings(settings, rec);
    EXPECT_EQ(rec.BaudRate, 9);
}

TEST(ScaleSettingsTest, ApplySettings_ASerialPortAndATypeStayWhenNoneIsChosen) {
    TScaleRec rec = EditedSerialScale();
    TScaleSettings settings = SettingsOf(rec, {"COM1", "COM2"});
    EXPECT_EQ(settings.serialPort, -1);
    settings.type = -1;
    ApplySettings(settings, rec);
    EXPECT_EQ(rec.TCPAddress.View(), "COM3");
    EXPECT_EQ(rec.ScaleType, kScaleTypeEts);
}

TEST(ScaleSettingsTest, DefaultScaleName_IsMadeOfTypeAddressAndNumber) {
    TScaleRec rec = EditedNetworkScale();
    EXPECT_EQ(DefaultScaleName(rec), "(ETS) - 192.168.1.10 (3)");
    rec.ScaleType = 16;
    EXPECT_EQ(DefaultScaleName(rec), "(EVL) - 192.168.1.10 (3)");
    rec.ScaleType = 300;
    EXPECT_EQ(DefaultScaleName(rec), "(SI) - 192.168.1.10 (3)");
    rec.ScaleType = 17;
    EXPECT_EQ(DefaultScaleName(rec), "");
}

}  // namespace tolvane::test

#include "command/ScaleList.h"

#include <gtest/gtest.h>

#include "upload/RunScales.h"

namespace tolvane::test {
namespace {

// A good TCP scale in section SCALE1, with one key replaced.
std::string Section(const std::string& key = {}, const std::string& value = {}) {
    std::string text = "[SCALE1]\r\n";
    const std::vector<std::pair<std::string, std::string>> keys = {
        {"ScaleNumb", "7"}, {"ScaleName", "Meat"}, {"TCPAddress", "10.0.0.7"}, {"TCPPort", "100"},
        {"Checked", "1"},   {"BaudRate", "0"},     {"ScaleType", "16"},        {"Encoding", "2"},
        {"ScaleAddr", "0"}, {"CommType", "1"}};
    for (const auto& [name, usual] : keys)
        text += name + "=" + (name == key ? value : usual) + "\r\n";
    return text;
}

TListedScale Only(const std::string& text) {
    const std::vector<TListedScale> scales = ListedScales(TIniDocument(text));
    EXPECT_EQ(scales.size(), 1U);
    return scales.empty() ? TListedScale() : scales[0];
}

std::string FaultOf(const std::string& key, const std::string& value) {
    const TListedScale scale = Only(Section(key, value));
    EXPECT_EQ(scale.rec.ScaleNumb, 7);
    EXPECT_EQ(scale.rec.ScaleName.View(), "Meat");
    EXPECT_TRUE(scale.rec.Checked);
    EXPECT_EQ(scale.cure.empty(), scale.fault.empty());
    return scale.fault;
}

// The same serial scale, with one key replaced.
std::string SerialFaultOf(const std::string& key, const std::string& value) {
    std::string text = Section(key, value);
    const auto replace = [&text](const std::string& from, const std::string& to) {
        if (const std::size_t at = text.find(from); at != std::string::npos)
            text.replace(at, from.size(), to);
    };
    replace("CommType=1", "CommType=0");
    replace("TCPAddress=10.0.0.7", "TCPAddress=COM1");
    return Only(text).fault;
}

TEST(ScaleList, HasTheRecordsThatTheWindowWouldRun) {
    const TIniDocument document(Section() + "[SCALE3]\r\nTCPAddress=10.0.0.3\r\nCommType=2\r\n");
    TScaleTable table;
    table.Load(document);
    const std::vector<TScaleObj> items = RunItems(table);
    const std::vector<TListedScale> scales = ListedScales(document);
    ASSERT_EQ(scales.size(), 2U);
    ASSERT_EQ(items.size(), 2U);
    for (std::size_t i = 0; i < scales.size(); ++i) {
        EXPECT_TRUE(scales[i].IsUsable()) << scales[i].fault;
        EXPECT_EQ(scales[i].rec, items[i].Rec);
    }
}

TEST(ScaleList, TellsWhatTheWindowLeavesOutWithoutAWord) {
    EXPECT_EQ(FaultOf("TCPAddress", ""), "it has no address");
    EXPECT_EQ(FaultOf("TCPPort", "0"), "its port \"0\" is not a number from 1 to 65535");
    EXPECT_EQ(SerialFaultOf("TCPPort", "0"),
              "its port is 0, which marks a scale that is not in use");
}

// 70000 would become 4464, address 300 would be 44, and a kind of connection that does not exist
// COM1.
TEST(ScaleList, TellsNumbersThatWouldBecomeOthers) {
    EXPECT_EQ(FaultOf("TCPPort", "70000"), "its port \"70000\" is not a number from 1 to 65535");
    EXPECT_EQ(FaultOf("TCPPort", "-1"), "its port \"-1\" is not a number from 1 to 65535");
    EXPECT_EQ(FaultOf("TCPPort", "x"), "its port \"x\" is not a number from 1 to 65535");
    EXPECT_EQ(FaultOf("CommType", "3"), "its kind of connection \"3\" is not a number from 0 to 2");
    EXPECT_EQ(FaultOf("CommType", "x"), "its kind of connection \"x\" is not a number from 0 to 2");
    EXPECT_EQ(SerialFaultOf("ScaleAddr", "300"),
              "its address on the line \"300\" is not a number from 0 to 255");
    EXPECT_EQ(SerialFaultOf("BaudRate", "256"), "its speed \"256\" is not a number from 0 to 255");
    EXPECT_EQ(FaultOf("TCPAddress", "192.168.100.1234"),
              "its address \"192.168.100.1234\" is longer than 15 characters");
}

// The driver would take each of them for COM1, or for a port of other digits: another scale.
TEST(ScaleList, TellsSerialPortsThatAreNone) {
    for (const std::string address : {"COM2:", "COMX", "COM", "COM0", "COM+2", "COM02", "COM1234",
                                      "\\\\.\\COM2", "10.0.0.5", "LPT2", "COM 2"})
        EXPECT_EQ(SerialFaultOf("TCPAddress", address),
                  "its address \"" + address + "\" is no serial port");
    for (const std::string address : {"COM1", "COM9", "COM10", "COM999", "com2"})
        EXPECT_EQ(SerialFaultOf("TCPAddress", address), "") << address;
}

// "5x" would become the section's number, and its articles and ledger another scale's.
TEST(ScaleList, TellsWordsThatAreNoNumbers) {
    const auto faultOf = [](const std::string& key, const std::string& value) {
        return Only(Section(key, value)).fault;
    };
    EXPECT_EQ(faultOf("ScaleNumb", "5x"), "its number \"5x\" is not a number from 1 to 65535");
    EXPECT_EQ(faultOf("ScaleNumb", "0"), "its number \"0\" is not a number from 1 to 65535");
    EXPECT_EQ(faultOf("ScaleType", "EVL"), "its model \"EVL\" is not a number from 0 to 65535");
    EXPECT_EQ(faultOf("Encoding", "zz"), "its code table \"zz\" is not a number from 0 to 65535");
}

TEST(ScaleList, MindsOnlyWhatTheConnectionNeeds) {
    EXPECT_EQ(FaultOf("ScaleAddr", "300"), "");
    EXPECT_EQ(SerialFaultOf("TCPPort", "70000"), "");
    EXPECT_EQ(FaultOf("TCPPort", ""), "") << "1001 is meant";
    EXPECT_EQ(FaultOf("TCPPort", "65535"), "");
    EXPECT_EQ(FaultOf("TCPAddress", "192.168.100.123"), "");
}

TEST(ScaleList, KnowsSections1To20Alone) {
    EXPECT_TRUE(ListedScales(TIniDocument("")).empty());
    EXPECT_TRUE(
        ListedScales(TIniDocument("\x01\xFF random \n=\n[SCALE21]\nTCPAddress=a\n")).empty());
    EXPECT_EQ(ListedScales(TIniDocument("[SCALE20]\nTCPAddress=10.0.0.1\n")).size(), 1U);
}

TEST(ScaleList, IsDividedByFaults) {
    const std::vector<TListedScale> scales =
        ListedScales(TIniDocument("[SCALE1]\n[SCALE2]\nTCPAddress=10.0.0.2\nCommType=1\n"));
    EXPECT_EQ(RecordsOf(scales).size(), 2U);
    ASSERT_EQ(UsableOf(scales).size(), 1U);
    EXPECT_EQ(UsableOf(scales)[0].ScaleNumb, 2);
}

}  // namespace
}  // namespace tolvane::test

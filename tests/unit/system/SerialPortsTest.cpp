#include "system/SerialPortList.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tolvane::test {
namespace {

using TNames = std::vector<std::string>;

TSerialPortScan Scan(TNames names) {
    return {true, true, std::move(names)};
}

}  // namespace

TEST(SerialPortsTest, StoreSerialPorts_ReplacesTheItemsInTheSystemsOrder) {
    TNames items = {"COM9"};
    StoreSerialPorts(Scan({"COM3", "COM10", "COM1"}), false, items);
    EXPECT_EQ(items, (TNames{"COM3", "COM10", "COM1"}));
}

TEST(SerialPortsTest, StoreSerialPorts_SortsAsTextWhenAskedTo) {
    TNames items;
    StoreSerialPorts(Scan({"COM3", "COM10", "com2", "COM1"}), true, items);
    EXPECT_EQ(items, (TNames{"COM1", "COM10", "com2", "COM3"}));
}

TEST(SerialPortsTest, StoreSerialPorts_LeavesTheItemsWhenThereIsNoList) {
    TNames items = {"COM9", "COM2"};
    StoreSerialPorts({}, true, items);
    EXPECT_EQ(items, (TNames{"COM9", "COM2"}));
}

TEST(SerialPortsTest, StoreSerialPorts_GivesCom1ToCom6WhenReadingFails) {
    TNames items = {"COM9"};
    StoreSerialPorts({true, false, {"COM3"}}, false, items);
    EXPECT_EQ(items, (TNames{"COM1", "COM2", "COM3", "COM4", "COM5", "COM6"}));
}

TEST(SerialPortsTest, StoreSerialPorts_EmptiesTheItemsWhenTheListIsEmpty) {
    TNames items = {"COM9"};
    StoreSerialPorts(Scan({}), true, items);
    EXPECT_TRUE(items.empty());
}

TEST(SerialPortsTest, ScanSerialPorts_NamesNoPortTwice) {
    TNames names = ScanSerialPorts().names;
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
    EXPECT_EQ(std::count(names.begin(), names.end(), ""), 0);
}

}  // namespace tolvane::test

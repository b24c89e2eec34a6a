#include "config/TypesUnit.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(ShortText, KeepsTheFirstCharactersOfALongerText) {
    TScaleRec rec;
    rec.ScaleName = std::string(49, 'a') + "bcd";
    rec.TCPAddress = "192.168.100.1001";
    EXPECT_EQ(rec.ScaleName.View(), std::string(49, 'a') + "b");
    EXPECT_EQ(rec.TCPAddress.View(), "192.168.100.100");
}

TEST(ShortText, ForgetsALongerTextBeforeAShorterOne) {
    TShortText<15> text("192.168.1.10");
    text = "COM1";
    EXPECT_EQ(text.Str(), "COM1");
    text = std::string_view();
    EXPECT_TRUE(text.Empty());
}

TEST(ShortText, HoldsAnyByte) {
    const std::string_view bytes("a\0\xFFz", 4);
    EXPECT_EQ(TShortText<50>(bytes).View(), bytes);
}

TEST(ScaleRec, IsCopiedWhole) {
    TScaleRec rec;
    rec.ScaleName = "EVL";
    rec.TCPPort = 1001;
    const TScaleRec copy = rec;
    rec.ScaleName = "ETS";
    EXPECT_EQ(copy.ScaleName.View(), "EVL");
    EXPECT_EQ(copy.TCPPort, 1001);
}

}  // namespace
}  // namespace tolvane

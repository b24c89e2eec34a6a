#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "Tshark.h"
#include "command/Trace.h"
#include "config/TypesUnit.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/scales/ScriptedChannel.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using std::chrono::microseconds;
using std::chrono::system_clock;
using TRows = std::vector<std::vector<std::string>>;

// Replies of scale 0 by hand.
const TCmdBuffer kVersionReply = {0x02, 0x0D, 0x14, 0x5C, 0x14, 0x45, 0x42, 0x44,
                                  0x48, 0x14, 0x14, 0x14, 0x14, 0xB4, 0x23, 0x14,
                                  0x14, 0x14, 0x14, 0x14, 0x15, 0xCF, 0x03};

// "Done" to a command of scale 0: each byte of the body is sent with 14 added.
TCmdBuffer Done(std::uint8_t command) {
    const auto sent = static_cast<std::uint8_t>(command + 0x14);
    return {0x02, 0x0D, 0x14, sent, 0x14, sent, 0x03};
}

// A run as the module makes it, traced from a fixed time on, a quarter of a second from packet to
// packet.
class ExchangesTest : public testing::Test {
protected:
    // A scale whose replies come as they stand here.
    std::unique_ptr<TElicomScale> Scale(const TTracedScale& who,
                                        const std::vector<TCmdBuffer>& replies) {
        auto channel = std::make_unique<test::TScriptedChannel>(clock_);
        for (const TCmdBuffer& reply : replies)
            channel->script.push_back(test::Answer(reply));
        auto traced =
            std::make_unique<TTracingChannel>(std::move(channel), trace_, trace_.AddScale(who));
        auto scale = std::make_unique<TElicomScale>(std::move(traced), false, clock_);
        EXPECT_TRUE(scale->OpenChannel());
        return scale;
    }
    TRows Fields(const std::vector<std::string>& names) const {
        return tshark_.Fields(path_, names);
    }

    TScratchFolder folder_;
    std::filesystem::path path_ = folder_ / "run.pcapng";
    // 2 January 2024, 03:04:05 UTC.
    system_clock::time_point now_{std::chrono::seconds(1'704'164'645)};
    TTraceFile trace_{path_, [this] {
                          now_ += microseconds(250'000);
                          return now_;
                      }};
    test::TRecordingClock clock_;
    test::TTshark tshark_;
    std::int32_t errCode_ = 0;
};

const TTracedScale kMeat = {3, std::string("Щанд месо"_cp1251), "TCP (10.0.0.5:1001)", kCommTcp, 0};

TEST_F(ExchangesTest, APacketHasItsTimeLinkAndDirection) {
    Scale(kMeat, {Done(0x3C)})->SetWeightMode(errCode_);
    Scale({4, "", "RS232 (COM4)", kCommSerial, 2}, {})->SetWeightMode(errCode_);
    EXPECT_EQ(Fields({"frame.time_epoch", "frame.interface_name", "frame.interface_description",
                      "tolvane.link", "tolvane.direction", "tolvane.scale", "tolvane.result",
                      "tolvane.request_in", "tolvane.time"}),
              (TRows{
                  {"1704164645.250000000", "scale 3 Щанд месо", "TCP (10.0.0.5:1001)", "1", "0",
                   "3", "0", "", ""},
                  {"1704164645.500000000", "scale 3 Щанд месо", "TCP (10.0.0.5:1001)", "1", "1",
                   "3", "0", "1", "0.250000000"},
                  {"1704164645.750000000", "scale 4", "RS232 (COM4)", "0", "0", "4", "0", "", ""},
                  {"1704164646.000000000", "scale 4", "RS232 (COM4)", "0", "1", "4", "2", "3",
                   "0.250000000"},
              }));
}

TEST_F(ExchangesTest, AFailureIsAComment) {
    Scale(kMeat, {})->SetWeightMode(errCode_);
    EXPECT_EQ(Fields({"frame.comment"}),
              (TRows{{""}, {"[SCRIPT] Fail read data (peer) - Read timeout occured"}}));
}

TEST_F(ExchangesTest, ARequestHasItsFields) {
    const auto scale = Scale(kMeat, {Done(0x36), Done(0x4A), Done(0x4A), Done(0x4B), Done(0x49)});
    scale->SetPrgMode(errCode_);
    scale->SetPrice(errCode_, 300, 12.34, 0);
    scale->SetPrice(errCode_, 301, 0.5, 250);
    scale->SetPriceC(errCode_, 65535, 9999.99, true, 99, 20);
    scale->SetPrice(errCode_, 1, 0);
    // Of both packets of an exchange; the reply has only the command.
    EXPECT_EQ(Fields({"tolvane.address", "tolvane.command", "tolvane.plu", "tolvane.price",
                      "tolvane.weight", "tolvane.pieces", "tolvane.tare", "tolvane.label",
                      "tolvane.checksum", "tolvane.checksum.good"}),
              (TRows{
                  {"0", "0x36", "", "", "", "", "", "", "0x36", "1"},
                  {"0", "0x36", "", "", "", "", "", "", "0x36", "1"},
                  {"0", "0x4a", "300", "12.34", "0", "", "", "", "0xbd", "1"},
                  {"0", "0x4a", "", "", "", "", "", "", "0x4a", "1"},
                  // 4A + 2D + 01 + 50 + 50 + 02 = 11A
                  {"0", "0x4a", "301", "0.5", "0.25", "", "", "", "0x1a", "1"},
                  {"0", "0x4a", "", "", "", "", "", "", "0x4a", "1"},
                  // 4B + FF + FF + 99 + 99 + 99 + 01 + 63 + 14 = 48C
                  {"0", "0x4b", "65535", "9999.99", "", "1", "99", "20", "0x8c", "1"},
                  {"0", "0x4b", "", "", "", "", "", "", "0x4b", "1"},
                  {"0", "0x49", "1", "0", "", "", "", "", "0x4a", "1"},
                  {"0", "0x49", "", "", "", "", "", "", "0x49", "1"},
              }));
}

TEST_F(ExchangesTest, ATextIsReadByTheCodeTableOfItsScale) {
    const std::vector<TCmdBuffer> done(3, Done(0x4C));
    for (const std::uint8_t table : {kCodeTableRaw, kCodeTablePc855, kCodeTablePc866}) {
        const auto scale = Scale({1 + table, "", "UDP (h:1001)", kCommUdp, table}, done);
        scale->ScaleType = kScaleTypeEts;
        scale->SetParam(errCode_, 300, 0, "Сирене Ябълка"_cp1251, table);
        scale->SetParam(errCode_, 300, 4, "\x01\x01\x6D", kCodeTableRaw);
        scale->SetParam(errCode_, 300, 5, "22012", table);
    }
    TRows expected;
    for (int i = 0; i < 3; ++i) {
        expected.push_back({"0", "31", "Сирене Ябълка", ""});
        expected.push_back({"", "", "", ""});
        expected.push_back({"4", "3", "", "365"});
        expected.push_back({"", "", "", ""});
        expected.push_back({"5", "5", "22012", ""});
        expected.push_back({"", "", "", ""});
    }
    EXPECT_EQ(Fields({"tolvane.parameter", "tolvane.length", "tolvane.text", "tolvane.days"}),
              expected);
}

TEST_F(ExchangesTest, AnotherCodeTableCanBeChosen) {
    const auto scale = Scale(kMeat, {Done(0x4C)});
    scale->SetParam(errCode_, 300, 5, "Мед"_cp1251, kCodeTablePc866);
    // 8C A5 A4 as code page 1251.
    EXPECT_EQ(tshark_.Field(path_, "tolvane.text").at(0), "ЊҐ¤");
    tshark_.options = "-o 'tolvane.table:PC-866 (RUS CYR)'";
    EXPECT_EQ(tshark_.Field(path_, "tolvane.text").at(0), "Мед");
}

TEST_F(ExchangesTest, AVersionReplyHasItsFields) {
    std::int32_t maxPlu = 0;
    std::int32_t mode = 0;
    std::string version;
    Scale(kMeat, {kVersionReply})->GetVersion(errCode_, maxPlu, mode, version);
    EXPECT_EQ(
        Fields({"tolvane.error", "tolvane.scale_version", "tolvane.capacity", "tolvane.mode"}),
        (TRows{{"", "", "", ""}, {"0", "1.04", "4000", "1"}}));
}

TEST_F(ExchangesTest, ThePacketListTellsTheRun) {
    const auto scale =
        Scale(kMeat, {Done(0x4A), Done(0x4C), {0x02, 0x0D, 0x14, 0x5D, 0x1B, 0x64, 0x03}});
    scale->SetPrice(errCode_, 300, 12.3, 0);
    scale->SetParam(errCode_, 300, 0, "Сирене"_cp1251, kCodeTableRaw);
    scale->SetPrice(errCode_, 300, 0);
    scale->SetWeightMode(errCode_);
    EXPECT_EQ(
        Fields({"_ws.col.Source", "_ws.col.Destination", "_ws.col.Info"}),
        (TRows{
            {"Host", "Scale 3", "Request SetPrice with weight field 300 price 12.30 weight 0.000"},
            {"Scale 3", "Host", "Reply SetPrice with weight field: done"},
            {"Host", "Scale 3", "Request SetParam 300 0 (label name 1) \"Сирене\""},
            {"Scale 3", "Host", "Reply SetParam: done"},
            {"Host", "Scale 3", "Request SetPrice 300 price 0.00"},
            {"Scale 3", "Host", "Reply SetPrice: error 7"},
            {"Host", "Scale 3", "Request SetWeightMode"},
            {"Scale 3", "Host", "Reply (time-out)"},
        }));
}

TEST_F(ExchangesTest, NothingIsWrongWithARightRun) {
    const auto scale =
        Scale(kMeat, {Done(0x3C), Done(0x36), kVersionReply, Done(0x4A), Done(0x4C)});
    std::int32_t maxPlu = 0;
    std::int32_t mode = 0;
    std::string version;
    EXPECT_TRUE(scale->SetWeightMode(errCode_));
    EXPECT_TRUE(scale->SetPrgMode(errCode_));
    EXPECT_TRUE(scale->GetVersion(errCode_, maxPlu, mode, version));
    EXPECT_TRUE(scale->SetPrice(errCode_, 300, 12.34, 0));
    EXPECT_TRUE(scale->SetParam(errCode_, 300, 0, "Сирене"_cp1251, kCodeTableRaw));
    EXPECT_EQ(Fields({"_ws.expert.message"}), TRows(10, {""}));
}

TEST_F(ExchangesTest, TheDissectorWorksFromTheFolderOfPlugins) {
    Scale(kMeat, {Done(0x3C)})->SetWeightMode(errCode_);
    tshark_.asPlugin = true;
    EXPECT_EQ(Fields({"tolvane.command"}), (TRows{{"0x3c"}, {"0x3c"}}));
}

}  // namespace
}  // namespace tolvane

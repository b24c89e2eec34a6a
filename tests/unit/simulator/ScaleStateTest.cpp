#include "simulator/ScaleState.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "Bytes.h"
#include "tests/support/ScratchFolder.h"

namespace tolvane::simulator {
namespace {

TEST(BestBeforeDays, AreTheBytesAfterTheFirstMostSignificantFirst) {
    const auto days = [](TBytes bytes) {
        TArticle article;
        article.texts[4].bytes = std::move(bytes);
        return article.BestBefore();
    };
    EXPECT_EQ(days({0x01, 0x00}), 0);
    EXPECT_EQ(days({0x01, 0xFF}), 255);
    EXPECT_EQ(days({0x01, 0x01, 0x00}), 256);
    EXPECT_EQ(days({0x01, 0x01, 0x6D}), 365);
    EXPECT_EQ(days({0x01}), std::nullopt);
    EXPECT_EQ(days({0x01, 0x01, 0x02, 0x03, 0x04}), std::nullopt);
    EXPECT_EQ(TArticle().BestBefore(), std::nullopt);
}

// Article 7: "Хляб" in PC-866, 12.34, weight field 0.250, 30 days, barcode 12345; article 9 was
// deleted.
TScaleState Sample() {
    TScaleState state;
    state.scale = {TModel::Ets, "2.10", 9999, 1, 5, TCodeTable::Pc866};
    state.programming = true;
    state.requests = {12, 1, 2, 3, 4, 5, {{0x4C, 6}, {0x50, 1}}};
    TArticle& bread = state.articles[7];
    bread = {7, 1234, 250, false, 4, 1, 2, {}};
    bread.texts[0] = {Bytes("95 AB EF A1 20 20"), 2};
    bread.texts[4] = {Bytes("01 1E"), 1};
    bread.texts[5] = {Bytes("31 32 33 34 35"), 1};
    TArticle& gone = state.articles[9];
    gone = {9, 0, {}, {}, {}, {}, 1, {}};
    gone.texts[0] = {Bytes("00 20 20"), 1};
    return state;
}

constexpr const char* kSampleJson = R"({
    "scale": {"model": "ETS", "version": "2.10", "capacity": 9999, "labelMode": 1, "address": 5,
              "codeTable": "pc866"},
    "mode": "programming",
    "requests": {"total": 12, "refused": 1, "ignored": 2, "malformed": 3, "badChecksum": 4,
                 "wrongAddress": 5, "byCommand": {"SetParam": 6, "0x50": 1}},
    "articles": [
        {"number": 7, "price": 1234, "weight": 250, "pieces": false, "tare": 4, "label": 1,
         "bestBefore": 30, "cleared": false, "priceWrites": 2,
         "texts": [{"parameter": 0, "hex": "95ABEFA12020", "text": "Хляб", "writes": 2},
                   {"parameter": 4, "hex": "011E", "text": "\u0001\u001E", "writes": 1},
                   {"parameter": 5, "hex": "3132333435", "text": "12345", "writes": 1}]},
        {"number": 9, "price": 0, "weight": null, "pieces": null, "tare": null, "label": null,
         "bestBefore": null, "cleared": true, "priceWrites": 1,
         "texts": [{"parameter": 0, "hex": "002020", "text": "", "writes": 1}]}]})";

class ScaleStateTest : public testing::Test {
protected:
    std::string Path(const char* name) const { return (folder_ / name).string(); }

private:
    TScratchFolder folder_;
};

TEST_F(ScaleStateTest, ToJson_WritesEveryField) {
    EXPECT_EQ(ToJson(Sample()), nlohmann::json::parse(kSampleJson));
}

TEST_F(ScaleStateTest, FromJson_ReadsEveryField) {
    EXPECT_EQ(FromJson(nlohmann::json::parse(kSampleJson)), Sample());
}

TEST_F(ScaleStateTest, SaveState_ReplacesAFileThatLoadStateReads) {
    PutFile(Path("state.json"), "old");
    SaveState(Sample(), Path("state.json"));
    EXPECT_EQ(LoadState(Path("state.json")), Sample());
    EXPECT_FALSE(std::filesystem::exists(Path("state.json.new")));
}

TEST_F(ScaleStateTest, SaveState_WritesTextsAsUtf8) {
    SaveState(Sample(), Path("state.json"));
    EXPECT_NE(GetFile(Path("state.json")).find("\"text\": \"Хляб\""), std::string::npos);
}

TEST_F(ScaleStateTest, SaveState_FailsInAFolderThatDoesNotExist) {
    EXPECT_THROW(SaveState(Sample(), Path("nowhere/state.json")), std::runtime_error);
}

std::string WhyNotLoaded(const std::string& path) {
    try {
        LoadState(path);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "accepted";
}

TEST_F(ScaleStateTest, LoadState_NamesTheFileAndWhatIsWrong) {
    EXPECT_EQ(WhyNotLoaded(Path("none.json")), "cannot read " + Path("none.json"));
    nlohmann::json json = nlohmann::json::parse(kSampleJson);
    json["scale"]["model"] = "XYZ";
    PutFile(Path("model.json"), json.dump());
    EXPECT_EQ(WhyNotLoaded(Path("model.json")),
              Path("model.json") + ": not a scale's state: unknown model");
    json = nlohmann::json::parse(kSampleJson);
    json["articles"][0]["texts"][0]["hex"] = "9";
    PutFile(Path("hex.json"), json.dump());
    EXPECT_EQ(WhyNotLoaded(Path("hex.json")),
              Path("hex.json") + ": not a scale's state: bad bytes of article 7");
}

TEST_F(ScaleStateTest, PrintState_ShowsOneLineForEachArticleThatIsNotCleared) {
    EXPECT_EQ(PrintState(Sample()),
              "ETS, version 2.10, 9999 articles at most, label mode 1, programming mode\n"
              "PLU  Price  Weight    Kind  Tare  Label  Days  Barcode  Name  Name 2\n"
              "  7  12.34   0.250  weight     4      1    30  12345    Хляб\n"
              "1 articles, 1 cleared, 12 requests, 1 refused\n");
}

}  // namespace
}  // namespace tolvane::simulator

// What deleting marked articles, and then all, has left in the demo's scales.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>

namespace {

constexpr int kCapacity = 320;

using nlohmann::json;
using TArticles = std::map<int, json>;

std::string Folder() {
    const char* folder = std::getenv("TOLVANE_DELETES_FOLDER");
    return folder == nullptr ? std::string() : folder;
}

std::string Content(const std::string& name) {
    std::ifstream file(Folder() + "/" + name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// What the delete changes is left out of the comparison and checked by itself.
TArticles ArticlesOf(const std::string& scale, const std::string& stage) {
    TArticles articles;
    const json state = json::parse(Content(scale + "." + stage));
    for (const json& article : state.at("articles"))
        articles[article.at("number")] = article;
    return articles;
}

std::string NameBytes(const json& article) {
    for (const json& text : article.at("texts"))
        if (text.at("parameter") == 0) return text.at("hex");
    return {};
}

bool IsCleared(const json& article) {
    std::string cleared = "00";
    for (int i = 0; i < 30; ++i)
        cleared += "20";
    return article.at("price") == 0 && NameBytes(article) == cleared;
}

// Everything but price, name and what is counted and derived from them.
json Rest(json article) {
    json texts = json::array();
    for (const json& text : article.at("texts"))
        if (text.at("parameter") != 0) texts.push_back(text);
    article["texts"] = texts;
    for (const char* key : {"price", "weight", "priceWrites", "cleared"})
        article.erase(key);
    return article;
}

// The number of valid articles that the log names before a scale's part; -1 when it names none.
int ValidIn(const std::string& log, const std::string& scale) {
    const std::size_t start = log.find("Старт на запис във везна: " + scale);
    if (start == std::string::npos) return -1;
    const std::size_t at = log.rfind("Валидни са ", start);
    return at == std::string::npos ? -1
                                   : std::stoi(log.substr(at + std::string("Валидни са ").size()));
}

struct TScale {
    std::string file;
    std::string name;  // as the log has it
};

class DeletesTest : public testing::TestWithParam<TScale> {
protected:
    void SetUp() override {
        ASSERT_FALSE(Folder().empty()) << "TOLVANE_DELETES_FOLDER names the folder of the deletes";
        before_ = ArticlesOf(GetParam().file, "before");
        marked_ = ArticlesOf(GetParam().file, "marked");
        all_ = ArticlesOf(GetParam().file, "all");
        ASSERT_FALSE(before_.empty());
    }

    TArticles before_;
    TArticles marked_;
    TArticles all_;
};

TEST_P(DeletesTest, MarkedArticlesAreClearedAndNothingElseChanges) {
    std::set<int> cleared;
    ASSERT_EQ(marked_.size(), before_.size());
    for (const auto& [number, article] : before_) {
        ASSERT_EQ(marked_.count(number), 1U) << number;
        const json& after = marked_.at(number);
        if (after == article) continue;
        EXPECT_TRUE(IsCleared(after)) << number;
        EXPECT_EQ(Rest(after), Rest(article)) << number;
        EXPECT_EQ(after.at("weight"), article.at("weight")) << number;
        cleared.insert(number);
    }
    EXPECT_FALSE(cleared.empty());
    EXPECT_EQ(static_cast<int>(cleared.size()), ValidIn(Content("marked.log"), GetParam().name));
    EXPECT_NE(Content("marked.log").find("Успешно записани артикули във везна: " + GetParam().name),
              std::string::npos);
}

TEST_P(DeletesTest, AllNumbersAreClearedAndNothingElseChanges) {
    for (int number = 1; number <= kCapacity; ++number) {
        ASSERT_EQ(all_.count(number), 1U) << number;
        EXPECT_TRUE(IsCleared(all_.at(number))) << number;
        EXPECT_EQ(all_.at(number).at("weight"), 0) << number;
    }
    for (const auto& [number, article] : before_) {
        if (number <= kCapacity)
            EXPECT_EQ(Rest(all_.at(number)), Rest(article)) << number;
        else
            EXPECT_EQ(all_.at(number), article) << number;
    }
    EXPECT_NE(Content("all.log").find("Успешно изтрити артикули от везна: " + GetParam().name),
              std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Demo, DeletesTest,
                         testing::Values(TScale{"evl", "EVL - щанд 1"},
                                         TScale{"ets", "ETS - щанд 2"},
                                         TScale{"s300", "S300 - щанд 3"}),
                         [](const auto& parameter) { return parameter.param.file; });

}  // namespace

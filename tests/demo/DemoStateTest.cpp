// What seven articles of the demo shop are in the demo's scales, byte for byte. The bytes were
// worked out by hand from demo/shop.sql: names are cut to 20 characters, texts to 31 and padded
// with spaces, and each character goes through code table 2 (PC-866).

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

namespace {

struct TExpected {
    std::string scale;
    int number;
    int hundredths;
    std::map<int, std::string> texts;  // parameter, bytes in hexadecimal
};

// clang-format off
const TExpected kExpected[] = {
    {"evl", 1, 710,
     {
         {0, "91A2A8ADE1AAA820A2E0A0E220A1A5A720AAAEE12020202020202020202020"},  // Свински врат без кос
         {1, "91A2A8ADE1AAA820A2E0A0E220A1A5A720AAAEE12020202020202020202020"},
         {2, "91EAE5E0A0ADA5ADA8A520AEE2203020A4AE202B3420709120202020202020"},  // Съхранение от 0 до +4 °С
         {3, "8FE0AEA8A7E5AEA43A2081EAABA3A0E0A8EF20202020202020202020202020"},  // Произход: България
         {4, "0105"},  // 5 days
         {5, "3230303031"},  // 20001
         {6, "84A020E1A520AAAEADE1E3ACA8E0A020E1ABA5A420E2A5E0ACA8E7ADA020AE"},  // Да се консумира след термична о
         {7, "4C3234303530322D3120202020202020202020202020202020202020202020"},  // L240502-1
     }},
    {"evl", 24, 499,  // promotion
     {
         {0, "8FA8ABA5E8AAAE20E4A8ABA520202020202020202020202020202020202020"},  // Пилешко филе
         {1, "8FA8ABA5E8AAAE20E4A8ABA520202020202020202020202020202020202020"},
         {2, "91EAE5E0A0ADA5ADA8A520AEE2203020A4AE202B3420709120202020202020"},  // Съхранение от 0 до +4 °С
         {3, "8FE0AEA8A7E5AEA43A2081EAABA3A0E0A8EF20202020202020202020202020"},  // Произход: България
         {4, "0105"},  // 5 days
         {5, "3230303234"},  // 20024
         {6, "84A020E1A520AAAEADE1E3ACA8E0A020E1ABA5A420E2A5E0ACA8E7ADA020AE"},  // Да се консумира след термична о
         {7, "20202020202020202020202020202020202020202020202020202020202020"},
     }},
    {"evl", 96, 1044,  // 11.60 less 10 per cent
     {
         {0, "8AA0E8AAA0A2A0AB20A2A8E2AEE8A020202020202020202020202020202020"},  // Кашкавал витоша
         {1, "8AA0E8AAA0A2A0AB20A2A8E2AEE8A020202020202020202020202020202020"},
         {2, "91EAE1E2A0A2AAA83A20ACABEFAAAE2C20E1AEAB2C20A7A0AAA2A0E1AAA02C"},  // Съставки: мляко, сол, закваска,
         {3, "91EAA4EAE0A6A0208C8B9F8A8E20A820ACABA5E7ADA820AFE0AEA4E3AAE2A8"},  // Съдържа МЛЯКО и млечни продукти
         {4, "011E"},  // 30 days
         {5, "3230303936"},  // 20096
         {6, "91EAE5E0A0ADA5ADA8A520AEE2202B3220A4AE202B36207091202020202020"},  // Съхранение от +2 до +6 °С
         {7, "20202020202020202020202020202020202020202020202020202020202020"},
     }},
    {"ets", 96, 1044,
     {
         {0, "8AA0E8AAA0A2A0AB20A2A8E2AEE8A020202020202020202020202020202020"},  // Кашкавал витоша
         {1, "8AA0E8AAA0A2A0AB20A2A8E2AEE8A020202020202020202020202020202020"},
         {2, "91EAE1E2A0A2AAA83A20ACABEFAAAE2C20E1AEAB2C20A7A0AAA2A0E1AAA02C"},  // Съставки: мляко, сол, закваска,
         {3, "91EAA4EAE0A6A0208C8B9F8A8E20A820ACABA5E7ADA820AFE0AEA4E3AAE2A8"},  // Съдържа МЛЯКО и млечни продукти
         {4, "011E"},  // 30 days
         {5, "3230303936"},  // 20096
         {6, "91EAE5E0A0ADA5ADA8A520AEE2202B3220A4AE202B36207091202020202020"},  // Съхранение от +2 до +6 °С
         {7, "20202020202020202020202020202020202020202020202020202020202020"},
         {14, "39362020202020202020202020202020202020202020202020202020202020"},  // 96
         {15, "31313137202020202020202020202020202020202020202020202020202020"},  // 1117
     }},
    {"ets", 101, 4176,  // a promotion is not converted: 52.20 leva less 20 per cent
     {
         {0, "8FA0E0ACA5A7A0AD2020202020202020202020202020202020202020202020"},  // Пармезан
         {1, "8FA0E0ACA5A7A0AD2020202020202020202020202020202020202020202020"},
         {2, "91EAE1E2A0A2AAA83A20ACABEFAAAE2C20E1AEAB2C20A7A0AAA2A0E1AAA02C"},  // Съставки: мляко, сол, закваска,
         {3, "91EAA4EAE0A6A0208C8B9F8A8E20A820ACABA5E7ADA820AFE0AEA4E3AAE2A8"},  // Съдържа МЛЯКО и млечни продукти
         {4, "01016D"},  // 365 days
         {5, "3230313031"},  // 20101
         {6, "91EAE5E0A0ADA5ADA8A520AEE2202B3220A4AE202B36207091202020202020"},  // Съхранение от +2 до +6 °С
         {7, "4C3235303830372D3130312020202020202020202020202020202020202020"},  // L250807-101
         {14, "31303120202020202020202020202020202020202020202020202020202020"},  // 101
         {15, "31313232202020202020202020202020202020202020202020202020202020"},  // 1122
     }},
    {"ets", 102, 1089,  // 21.30 leva at 51.129188 euro for 100
     {
         {0, "83A0E3A4A02020202020202020202020202020202020202020202020202020"},  // Гауда
         {1, "83A0E3A4A02020202020202020202020202020202020202020202020202020"},
         {2, "91EAE1E2A0A2AAA83A20ACABEFAAAE2C20E1AEAB2C20A7A0AAA2A0E1AAA02C"},  // Съставки: мляко, сол, закваска,
         {3, "91EAA4EAE0A6A0208C8B9F8A8E20A820ACABA5E7ADA820AFE0AEA4E3AAE2A8"},  // Съдържа МЛЯКО и млечни продукти
         {4, "011E"},  // 30 days
         {5, "3230313032"},  // 20102
         {6, "91EAE5E0A0ADA5ADA8A520AEE2202B3220A4AE202B36207091202020202020"},  // Съхранение от +2 до +6 °С
         {7, "20202020202020202020202020202020202020202020202020202020202020"},
         {14, "31303220202020202020202020202020202020202020202020202020202020"},  // 102
         {15, "31313233202020202020202020202020202020202020202020202020202020"},  // 1123
     }},
    {"ets", 238, 659,  // promotion
     {
         {0, "81A0AAABA0A2A020E120AEE0A5E5A820202020202020202020202020202020"},  // Баклава с орехи
         {1, "81A0AAABA0A2A020E120AEE0A5E5A820202020202020202020202020202020"},
         {2, "91EAE1E2A0A2AAA83A20AFE8A5ADA8E7ADAE20A1E0A0E8ADAE2C20A7A0E5A0"},  // Съставки: пшенично брашно, заха
         {3, "91EAA4EAE0A6A020838B9392858D20A8208E90859588202020202020202020"},  // Съдържа ГЛУТЕН и ОРЕХИ
         {4, "010E"},  // 14 days
         {5, "3230323338"},  // 20238
         {6, "84A020E1A520E1EAE5E0A0ADEFA2A020A4AE202B3138207091202020202020"},  // Да се съхранява до +18 °С
         {7, "20202020202020202020202020202020202020202020202020202020202020"},
         {14, "32333820202020202020202020202020202020202020202020202020202020"},  // 238
         {15, "31323836202020202020202020202020202020202020202020202020202020"},  // 1286
     }},
    {"ets", 250, 175,
     {
         {0, "8FA0E1E2A020A3A0E0A0E82020202020202020202020202020202020202020"},  // Паста гараш
         {1, "8FA0E1E2A020A3A0E0A0E82020202020202020202020202020202020202020"},
         {2, "91EAA4EAE0A6A020838B9392858D2C209F8996802C208C8B9F8A8E3B20ACAE"},  // Съдържа ГЛУТЕН, ЯЙЦА, МЛЯКО; мо
         {3, "84A020E1A520E1EAE5E0A0ADEFA2A020A4AE202B3235207091202020202020"},  // Да се съхранява до +25 °С
         {4, "010E"},  // 14 days
         {5, "3230323530"},  // 20250
         {6, "20202020202020202020202020202020202020202020202020202020202020"},
         {7, "20202020202020202020202020202020202020202020202020202020202020"},
         {14, "32353020202020202020202020202020202020202020202020202020202020"},  // 250
         {15, "31333031202020202020202020202020202020202020202020202020202020"},  // 1301
     }},
    {"s300", 238, 659,
     {
         {0, "81A0AAABA0A2A020E120AEE0A5E5A820202020202020202020202020202020"},  // Баклава с орехи
         {1, "81A0AAABA0A2A020E120AEE0A5E5A820202020202020202020202020202020"},
         {2, "91EAE1E2A0A2AAA83A20AFE8A5ADA8E7ADAE20A1E0A0E8ADAE2C20A7A0E5A0"},  // Съставки: пшенично брашно, заха
         {3, "91EAA4EAE0A6A020838B9392858D20A8208E90859588202020202020202020"},  // Съдържа ГЛУТЕН и ОРЕХИ
         {4, "010E"},  // 14 days
         {5, "3230323338"},  // 20238
         {6, "84A020E1A520E1EAE5E0A0ADEFA2A020A4AE202B3138207091202020202020"},  // Да се съхранява до +18 °С
         {7, "20202020202020202020202020202020202020202020202020202020202020"},
     }},
};
// clang-format on

std::string Folder() {
    const char* folder = std::getenv("TOLVANE_DEMO_FOLDER");
    return folder == nullptr ? std::string() : folder;
}

nlohmann::json ArticleIn(const std::string& scale, int number) {
    std::ifstream file(Folder() + "/" + scale + ".json");
    if (!file) return {};
    const nlohmann::json state = nlohmann::json::parse(file);
    for (const auto& article : state.at("articles"))
        if (article.at("number") == number) return article;
    return {};
}

class DemoStateTest : public testing::TestWithParam<TExpected> {};

TEST_P(DemoStateTest, AnArticleIsInTheScaleByteForByte) {
    ASSERT_FALSE(Folder().empty()) << "TOLVANE_DEMO_FOLDER names the folder of a finished demo";
    const nlohmann::json article = ArticleIn(GetParam().scale, GetParam().number);
    ASSERT_FALSE(article.is_null());
    EXPECT_EQ(article.at("price"), GetParam().hundredths);
    EXPECT_EQ(article.at("weight"), 0);
    std::map<int, std::string> texts;
    for (const auto& text : article.at("texts"))
        texts[text.at("parameter").get<int>()] = text.at("hex").get<std::string>();
    EXPECT_EQ(texts, GetParam().texts);
}

std::string Name(const testing::TestParamInfo<TExpected>& parameter) {
    return parameter.param.scale + std::to_string(parameter.param.number);
}

INSTANTIATE_TEST_SUITE_P(Demo, DemoStateTest, testing::ValuesIn(kExpected), Name);

}  // namespace

#include "tests/module/links/LinksFixture.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <tuple>

#include "tests/support/upload/SilentView.h"

namespace tolvane::test {

std::string Setting(const char* name) {
    const char* value = std::getenv((std::string("TOLVANE_LINKS_") + name).c_str());
    if (value == nullptr) ADD_FAILURE() << "TOLVANE_LINKS_" << name << " is not set";
    return value == nullptr ? std::string() : value;
}

int PriceIn(const std::string& scale, int number) {
    std::ifstream file(Setting("FOLDER") + "\\" + scale + ".json");
    if (!file) return -1;
    const nlohmann::json state = nlohmann::json::parse(file);
    for (const auto& article : state.at("articles"))
        if (article.at("number") == number) return article.at("price").get<int>();
    return -1;
}

std::vector<TFoundDevice> Sorted(std::vector<TFoundDevice> devices) {
    std::sort(devices.begin(), devices.end(), [](const TFoundDevice& a, const TFoundDevice& b) {
        return std::tie(a.kind, a.address) < std::tie(b.kind, b.address);
    });
    return devices;
}

void LinksFixture::ExpectUpload(const TScaleRec& rec, const std::string& scale, int number,
                                const std::string& price, int hundredths) {
    TSilentView view;
    const TRunStop stop;
    TScaleSession session(factory, clock, view, stop, '.');
    ASSERT_TRUE(session.InitComm(rec)) << session.LastError;
    const std::string line =
        std::to_string(number) + "|22012|1|0|0|" + price + "|0|30|Ham|||||L1|0|0|101|";
    ASSERT_TRUE(session.ProcessUpload({line}, rec)) << session.LastError;
    EXPECT_EQ(PriceIn(scale, number), hundredths);
}

}  // namespace tolvane::test

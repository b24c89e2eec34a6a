#include "RunWindowFixture.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "simulator/Commands.h"
#include "text/Cp1251.h"

namespace tolvane::test {

std::string Lines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

namespace {

// Of a message box; null when it has none.
HICON IconOf(HWND box) {
    for (HWND child = nullptr;
         (child = FindWindowExW(box, child, L"Static", nullptr)) != nullptr;) {
        const LRESULT icon = SendMessageW(child, STM_GETICON, 0, 0);
        if (icon != 0) return reinterpret_cast<HICON>(icon);
    }
    return nullptr;
}

}  // namespace

TRunWindowTest::TRunWindowTest() {
    frame_ = CreateWindowExW(0, L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 900,
                             700, nullptr, nullptr, nullptr, nullptr);
    owner_ = CreateWindowExW(0, L"STATIC", L"List", WS_CHILD | WS_VISIBLE, 0, 0, 500, 400, frame_,
                             nullptr, nullptr, nullptr);
    context_.scales = &scales_;
    wchar_t folder[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, folder);
    context_.iniFile = std::filesystem::path(folder) / "tolvane-run-window-test.ini";
    std::filesystem::remove(context_.iniFile);
    SetArticles({Goods(12, "Домати"_cp1251), Goods(7, "Яйца"_cp1251)});
    for (int slot = 1; slot <= 2; ++slot) {
        TScaleRec& rec = scales_[slot];
        rec.ScaleNumb = slot;
        rec.ScaleName = std::string("Везна "_cp1251) + std::to_string(slot);
        rec.TCPAddress = "127.0.0.1";
        rec.CommType = kCommTcp;
        rec.ScaleType = kScaleTypeEvl;
        rec.Encoding = 2;
        ReplaceScale(slot, {});
    }
    scales_[1].Checked = true;
}

TRunWindowTest::~TRunWindowTest() {
    if (IsWindow(frame_) != 0) DestroyWindow(frame_);
    std::error_code ignored;
    std::filesystem::remove(context_.iniFile, ignored);
}

void TRunWindowTest::SetArticles(const std::vector<TArticle>& articles) {
    context_.articles = TableOf(articles);
}

TArticle TRunWindowTest::Goods(std::int32_t number, std::string_view name) {
    TArticle article;
    article.number = number;
    article.scaleNumber = number;
    article.name = name;
    article.labelName = "B";
    return article;
}

std::vector<TArticle> TRunWindowTest::ManyGoods(int count) {
    std::vector<TArticle> articles;
    for (int number = 1; number <= count; ++number)
        articles.push_back(Goods(number, "A"));
    return articles;
}

void TRunWindowTest::ReplaceScale(int slot, const simulator::TScaleOptions& options) {
    auto& scale = virtualScales_.at(static_cast<std::size_t>(slot) - 1);
    scale = std::make_unique<simulator::TVirtualScale>(options);
    scale->Start();
    scales_[slot].TCPPort = scale->Port();
}

void TRunWindowTest::SetSilent(int slot) {
    simulator::TFault fault;
    fault.kind = simulator::TFaultKind::Silent;
    Scale(slot).SetFaults({{fault}});
}

int TRunWindowTest::PriceWrites(int slot) {
    const std::map<int, int> counts = Scale(slot).State().requests.byCommand;
    int writes = 0;
    for (const int command : {simulator::kSetPrice, simulator::kSetPriceWeight})
        writes += counts.count(command) != 0 ? counts.at(command) : 0;
    return writes;
}

HWND TRunWindowTest::Part(const char* name) {
    const HWND form = Form();
    return form == nullptr ? nullptr : FindComponent(form, name);
}

bool TRunWindowTest::LogEnds() {
    if (!IsAtRest()) return false;
    const std::string log = Log();
    const std::string end = std::string(kLogSeparator) + "\r\n";
    return log.size() > end.size() && log.substr(log.size() - end.size()) == end;
}

void TRunWindowTest::ExpectControls(bool running) {
    for (const char* name : {"SaveBtn", "DeleteBtn", "OkBtn", "ScaleList", "PriceRadio",
                             "PriceRadio0", "PriceRadio1", "cbPluName1", "cbPluName2"})
        EXPECT_EQ(IsEnabled(name), !running) << name;
    EXPECT_EQ(IsEnabled("StopReadBtn"), running);
}

void TRunWindowTest::ThenStart(const char* button) {
    script_.When([] { return IsAtRest(); },
                 [this, button] {
                     script_.Measure();
                     Click(Part(button));
                 });
}

void TRunWindowTest::ThenAnswer(int button) {
    script_.When([] { return Box() != nullptr; },
                 [this, button] {
                     box_ = Utf8Text(GetDlgItem(Box(), kMessageBoxText));
                     boxTitle_ = Utf8Text(Box());
                     boxIcon_ = IconOf(Box());
                     Click(GetDlgItem(Box(), button));
                 });
}

void TRunWindowTest::ThenClose() {
    script_.When([] { return LogEnds(); },
                 [this] {
                     log_ = Log();
                     PressKey(VK_ESCAPE);
                 });
}

void TRunWindowTest::Show(int runNumber) {
    ShowRunWindow(owner_, TRunNumber{runNumber}, context_);
    EXPECT_TRUE(script_.IsDone());
}

std::string TRunWindowTest::Ini() const {
    std::ifstream file(context_.iniFile, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace tolvane::test

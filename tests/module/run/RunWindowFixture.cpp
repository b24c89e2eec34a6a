#include "RunWindowFixture.h"

#include <filesystem>

#include "simulator/Commands.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"

namespace tolvane::test {

std::string Lines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

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
    SetArticles(TwoGoods());
    for (int slot = 1; slot <= 2; ++slot) {
        const std::string name = std::string("Везна "_cp1251) + std::to_string(slot);
        scales_[slot] = NetworkScale(slot, name, "127.0.0.1", 0);
        ReplaceScale(slot, {});
    }
    scales_[2].Checked = false;
}

TRunWindowTest::~TRunWindowTest() {
    if (IsWindow(frame_) != 0) DestroyWindow(frame_);
    std::error_code ignored;
    std::filesystem::remove(context_.iniFile, ignored);
}

void TRunWindowTest::SetArticles(const std::vector<TArticle>& articles) {
    context_.articles = TableOf(articles);
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
                     box_ = ReadBox(Box());
                     Click(GetDlgItem(Box(), button));
                 });
}

void TRunWindowTest::ThenClose() {
    script_.When([] { return LogEnds(); },
                 [this] {
                     log_ = Log();
                     PostKey(VK_ESCAPE);
                 });
}

void TRunWindowTest::Show(int runNumber) {
    ShowRunWindow(owner_, TRunNumber{runNumber}, context_);
    EXPECT_TRUE(script_.IsDone());
}

std::string TRunWindowTest::Ini() const {
    return GetFile(context_.iniFile);
}

}  // namespace tolvane::test

// Whatever answers at a scale's address costs a run of the module some seconds at most, and leaves
// the other scales alone.
#include <gtest/gtest.h>

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "simulator/VirtualScale.h"
#include "tests/support/module/Commands.h"
#include "tests/support/module/Session.h"
#include "tests/support/scales/HostileScale.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

std::string HostileSection(std::size_t number, int port) {
    const std::string digit = std::to_string(number);
    return "[SCALE" + digit + "]\r\nScaleNumb=" + digit + "\r\nScaleName=S" + digit +
           "\r\nTCPAddress=127.0.0.1\r\nTCPPort=" + std::to_string(port) +
           "\r\nChecked=1\r\nBaudRate=0\r\nScaleType=16\r\nEncoding=2\r\nScaleAddr=0\r\n"
           "CommType=1\r\n";
}

simulator::TScaleOptions GoodScale() {
    simulator::TScaleOptions options;
    options.scale = simulator::DefaultProperties(simulator::TModel::Evl);
    return options;
}

// Writes all articles into all scales; what the run window's log says.
std::string WriteAll(const TSession& session) {
    constexpr int kPatience = 60;
    std::string log;
    const TDialogScript script(
        L"TSetPluForm",
        {[](HWND window) { PostMessageW(ControlOf(window, "SaveBtn"), BM_CLICK, 0, 0); },
         [&](HWND window) {
             RunLoopUntil([&] { return TextOf(window, "StatusMemo").size() > 200; }, kPatience);
             EXPECT_TRUE(RunLoopUntil([&] { return IsEnabledIn(window, "OkBtn"); }, kPatience));
             log = TextOf(window, "StatusMemo");
             Press(window, "OkBtn");
         }});
    SendMessageW(session.List(), WM_COMMAND, kWriteAll, 0);
    RunLoopDry();
    return log;
}

}  // namespace

TEST(HostileScales, CostARunSomeSecondsAndNoOtherScaleAnything) {
    simulator::TVirtualScale good(GoodScale());
    good.Start();
    std::vector<std::unique_ptr<THostileScale>> hostile;
    std::string sections;
    for (const THostility& hostility : Hostilities()) {
        hostile.push_back(std::make_unique<THostileScale>(hostility));
        sections += HostileSection(hostile.size(), hostile.back()->Port());
    }
    const std::size_t last = hostile.size() + 1;
    TSession session("scales.fdb");
    TConfiguration::Write(sections + HostileSection(last, good.Port()));
    session.Start();
    const ULONGLONG begin = GetTickCount64();
    const std::string log = WriteAll(session);
    EXPECT_LT(GetTickCount64() - begin, 60'000U);
    for (std::size_t number = 1; number < last; ++number) {
        const std::string name = "S" + std::to_string(number) + "\r\n";
        const char* const kind = Hostilities()[number - 1].name;
        EXPECT_NE(log.find("Старт на запис във везна: " + name), std::string::npos) << kind;
        EXPECT_NE(log.find("Грешка при запис артикули във везна: " + name), std::string::npos)
            << kind;
    }
    EXPECT_NE(log.find("Успешно записани артикули във везна: S" + std::to_string(last)),
              std::string::npos)
        << log;
    EXPECT_EQ(log.find("Успешно"), log.rfind("Успешно")) << log;
    EXPECT_EQ(good.State().articles.size(), 3U);
    EXPECT_FALSE(good.State().programming);
}

}  // namespace tolvane::test

#include <winsock2.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "host/HostMenu.h"
#include "tests/module_host/HostSession.h"
#include "tests/support/window/BoxAnswerer.h"

namespace tolvane::test {
namespace {

constexpr const char* kNoConnection = "Няма връзка с базата данни";

// Connects with settings that must fail. Returns the text of the error box.
std::string FailureOf(const THostIni& ini) {
    THostSession session;
    session.WriteIni(ini);
    session.Open();
    const TBoxAnswerer boxes;
    session.Form().Connect();
    EXPECT_FALSE(session.Form().IsConnected());
    EXPECT_EQ(session.StatusText(), kNoConnection);
    EXPECT_NE(IsWindowEnabled(session.Frame()), 0);
    EXPECT_EQ(boxes.Seen().size(), 1U);
    if (boxes.Seen().empty()) return {};
    EXPECT_EQ(boxes.Seen()[0].caption, "Грешка");
    EXPECT_TRUE(Contains(boxes.Seen()[0].text, "\"Свързване\""));
    return boxes.Seen()[0].text;
}

TEST(HostConnectionTest, TheStatusBarNamesTheConnectedDatabase) {
    THostSession session;
    const THostIni ini = THostIni::Working();
    session.WriteIni(ini);
    session.Open();
    EXPECT_EQ(session.StatusText(), kNoConnection);
    EXPECT_TRUE(IsGreyed(session.Menu(kConnectionMenu), 1));
    const TBoxAnswerer boxes;
    session.Command(host::kConnect);
    EXPECT_TRUE(session.Form().IsConnected());
    EXPECT_EQ(session.StatusText(), "Свързана база: " + ini.database);
    EXPECT_FALSE(IsGreyed(session.Menu(kConnectionMenu), 1));
    session.Command(host::kDisconnect);
    EXPECT_EQ(session.StatusText(), kNoConnection);
    EXPECT_TRUE(boxes.Seen().empty());
}

TEST(HostConnectionTest, AMissingClientLibraryIsReported) {
    THostIni ini = THostIni::Working();
    ini.clientLibrary = "C:\\none\\client.dll";
    EXPECT_TRUE(Contains(FailureOf(ini), "C:\\none\\client.dll: не е намерена"));
}

TEST(HostConnectionTest, ALibraryThatIsNotAClientIsReported) {
    THostIni ini = THostIni::Working();
    ini.clientLibrary = "comdlg32.dll";
    EXPECT_TRUE(Contains(FailureOf(ini), "comdlg32.dll: не е клиент на Firebird"));
}

TEST(HostConnectionTest, ARefusedConnectionIsReportedInTheServersWords) {
    THostIni ini = THostIni::Working();
    ini.database = "127.0.0.1/1:/none.fdb";
    const std::string text = FailureOf(ini);
    EXPECT_TRUE(Contains(text, "Няма връзка с базата данни 127.0.0.1/1:/none.fdb"));
    EXPECT_TRUE(Contains(text, "Unable to complete network request to host"));
}

// A server that lets connect, and is silent from then on.
class TSilentServer {
public:
    TSilentServer() {
        WSADATA data{};
        if (WSAStartup(MAKEWORD(2, 2), &data) != 0) throw std::runtime_error("no sockets");
        socket_ = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        int size = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        if (bind(socket_, any, size) != 0 || listen(socket_, 5) != 0 ||
            getsockname(socket_, any, &size) != 0)
            throw std::runtime_error("no listening socket");
        port_ = ntohs(address.sin_port);
    }
    TSilentServer(const TSilentServer&) = delete;
    TSilentServer& operator=(const TSilentServer&) = delete;
    ~TSilentServer() {
        closesocket(socket_);
        WSACleanup();
    }

    std::string Port() const { return std::to_string(port_); }

private:
    SOCKET socket_ = INVALID_SOCKET;
    int port_ = 0;
};

TEST(HostConnectionTest, ASilentServerIsGivenUpAfterTenSeconds) {
    const TSilentServer server;
    THostIni ini = THostIni::Working();
    ini.database = "127.0.0.1/" + server.Port() + ":/none.fdb";
    const ULONGLONG start = GetTickCount64();
    const std::string text = FailureOf(ini);
    const ULONGLONG taken = GetTickCount64() - start;
    EXPECT_TRUE(Contains(text, "Няма връзка с базата данни " + ini.database)) << text;
    EXPECT_TRUE(Contains(text, "Проверете дали сървърът работи")) << text;
    EXPECT_GE(taken, 9'000U);
    EXPECT_LT(taken, 40'000U);
}

TEST(HostConnectionTest, AWrongPasswordIsReportedInTheServersWords) {
    THostIni ini = THostIni::Working();
    ini.password = "wrong";
    EXPECT_TRUE(Contains(FailureOf(ini), "Your user name and password are not defined"));
}

TEST(HostConnectionTest, AfterAFailureTheSettingsAreReadAnew) {
    THostSession session;
    THostIni ini = THostIni::Working();
    ini.clientLibrary = "C:\\none\\client.dll";
    session.WriteIni(ini);
    session.Open();
    const TBoxAnswerer boxes;
    session.Command(host::kConnect);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    session.WriteIni(THostIni::Working());
    session.Command(host::kConnect);
    EXPECT_EQ(boxes.Seen().size(), 1U);
    EXPECT_TRUE(session.Form().IsConnected());
}

TEST(HostConnectionTest, TheConnectionStaysWhileAnOperationRuns) {
    THostSession session;
    session.OpenWorking();
    session.Form().StartOperation(1);
    const TBoxAnswerer boxes;
    session.Command(host::kDisconnect);
    session.Command(host::kConnect);
    ASSERT_EQ(boxes.Seen().size(), 2U);
    EXPECT_TRUE(Contains(boxes.Seen()[0].text, "Затворете прозорците на операциите"));
    EXPECT_TRUE(session.Form().IsConnected());
}

}  // namespace
}  // namespace tolvane::test

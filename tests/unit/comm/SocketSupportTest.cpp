#include "comm/SocketSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <ostream>
#include <string>
#include <vector>

namespace tolvane {
namespace {

struct TReadError {
    std::string name;
    int windows;  // the error's number there
    int others;
};

void PrintTo(const TReadError& error, std::ostream* out) {
    *out << error.name;
}

std::error_code CodeOf(const TReadError& error) {
#ifdef _WIN32
    const int number = error.windows;
#else
    const int number = error.others;
#endif
    return {number, asio::error::get_system_category()};
}

const std::vector<TReadError> kLosses = {
    {"BrokenPipe", 109, EPIPE},
    {"NetworkDown", 10050, ENETDOWN},
    {"NetworkUnreachable", 10051, ENETUNREACH},
    {"NetworkReset", 10052, ENETRESET},
    {"ConnectionAborted", 10053, ECONNABORTED},
    {"ConnectionReset", 10054, ECONNRESET},
    {"NotConnected", 10057, ENOTCONN},
    {"ShutDown", 10058, ESHUTDOWN},
    {"TimedOut", 10060, ETIMEDOUT},
    {"HostUnreachable", 10065, EHOSTUNREACH},
};

const std::vector<TReadError> kOtherFailures = {
    {"Interrupted", 10004, EINTR},      {"AccessDenied", 10013, EACCES},
    {"BadAddress", 10014, EFAULT},      {"InvalidArgument", 10022, EINVAL},
    {"WouldBlock", 10035, EWOULDBLOCK}, {"NotASocket", 10038, ENOTSOCK},
    {"NoBufferSpace", 10055, ENOBUFS},
};

class LostConnectionTest : public testing::TestWithParam<TReadError> {};
class OtherReadFailureTest : public testing::TestWithParam<TReadError> {};

TEST_P(LostConnectionTest, IsALostConnection) {
    EXPECT_TRUE(IsLostConnection(CodeOf(GetParam()))) << CodeOf(GetParam()).message();
}

TEST_P(OtherReadFailureTest, IsNoLostConnection) {
    EXPECT_FALSE(IsLostConnection(CodeOf(GetParam()))) << CodeOf(GetParam()).message();
}

const auto kName = [](const auto& row) { return row.param.name; };
INSTANTIATE_TEST_SUITE_P(Errors, LostConnectionTest, testing::ValuesIn(kLosses), kName);
INSTANTIATE_TEST_SUITE_P(Errors, OtherReadFailureTest, testing::ValuesIn(kOtherFailures), kName);

TEST(LostConnectionByPeerTest, AnEndOfTheStreamIsOneAndSuccessIsNone) {
    EXPECT_TRUE(IsLostConnection(asio::error::eof));
    EXPECT_FALSE(IsLostConnection({}));
}

TEST(ReceivedDatagramTest, AReportedLengthAboveTheBufferIsAWrongAnswer) {
    const TCmdBuffer buffer(100, 0x41);
    EXPECT_EQ(ReceivedDatagram(buffer, 100).size(), 100U);
    EXPECT_EQ(ReceivedDatagram(buffer, 0).size(), 0U);
    try {
        ReceivedDatagram(buffer, 101);
        FAIL() << "101 bytes were taken";
    } catch (const CommException& failure) {
        EXPECT_EQ(failure.ErrorCode, kReadWrongAnswer);
        EXPECT_STREQ(failure.what(), "Wrong answer. Too long.");
    }
}

}  // namespace
}  // namespace tolvane

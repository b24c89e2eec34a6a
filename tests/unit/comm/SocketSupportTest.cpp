#include "comm/SocketSupport.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace tolvane {
namespace {

struct TReadError {
    std::string name;
    int onWindows;  // the error's number there
    int onLinux;
};

void PrintTo(const TReadError& error, std::ostream* out) {
    *out << error.name;
}

std::error_code CodeOf(const TReadError& error) {
#ifdef _WIN32
    const int number = error.onWindows;
#else
    const int number = error.onLinux;
#endif
    return {number, asio::error::get_system_category()};
}

const std::vector<TReadError> kLosses = {
    {"BrokenPipe", 109, 32},
    {"NetworkDown", 10050, 100},
    {"NetworkUnreachable", 10051, 101},
    {"NetworkReset", 10052, 102},
    {"ConnectionAborted", 10053, 103},
    {"ConnectionReset", 10054, 104},
    {"NotConnected", 10057, 107},
    {"ShutDown", 10058, 108},
    {"TimedOut", 10060, 110},
    {"HostUnreachable", 10065, 113},
};

const std::vector<TReadError> kOtherFailures = {
    {"Interrupted", 10004, 4},      {"AccessDenied", 10013, 13}, {"BadAddress", 10014, 14},
    {"InvalidArgument", 10022, 22}, {"WouldBlock", 10035, 11},   {"NotASocket", 10038, 88},
    {"NoBufferSpace", 10055, 105},
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

TEST(LostConnectionByPeerTest, AnEndOfTheStreamCountsAsOneAndSuccessDoesNot) {
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

#include "simulator/HttpRequest.h"

#include <gtest/gtest.h>

namespace tolvane::simulator {
namespace {

constexpr std::string_view kPost =
    "POST /faults?from=7&grams=250 HTTP/1.1\r\n"
    "Host: 127.0.0.1:8080\r\n"
    "Origin: http://127.0.0.1:8080\r\n"
    "Sec-Fetch-Site: same-origin\r\n"
    "Content-Type: application/x-www-form-urlencoded\r\n"
    "Content-Length: 15\r\n\r\n"
    "fault=slow&on=1";

void ExpectThePost(const THttpRequest& request) {
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.path, "/faults");
    EXPECT_EQ(request.query, (TFormFields{{"from", "7"}, {"grams", "250"}}));
    EXPECT_EQ(request.host, "127.0.0.1:8080");
    EXPECT_EQ(request.origin, "http://127.0.0.1:8080");
    EXPECT_EQ(request.fetchSite, "same-origin");
    EXPECT_EQ(request.contentType, "application/x-www-form-urlencoded");
    EXPECT_EQ(request.body, "fault=slow&on=1");
}

TEST(HttpRequestTest, ARequest_IsReadAtOnce) {
    THttpReader reader;
    EXPECT_EQ(reader.Feed(kPost), 200);
    ExpectThePost(reader.Request());
}

TEST(HttpRequestTest, ARequest_IsReadByteByByte) {
    THttpReader reader;
    for (std::size_t i = 0; i + 1 < kPost.size(); ++i)
        ASSERT_EQ(reader.Feed(kPost.substr(i, 1)), 0) << i;
    EXPECT_EQ(reader.Feed(kPost.substr(kPost.size() - 1)), 200);
    ExpectThePost(reader.Request());
}

TEST(HttpRequestTest, WhatIsNotThere_IsEmpty) {
    THttpReader reader;
    EXPECT_EQ(reader.Feed("GET / HTTP/1.1\r\n\r\n"), 200);
    EXPECT_EQ(reader.Request().path, "/");
    EXPECT_EQ(reader.Request().host, "");
    EXPECT_TRUE(reader.Request().query.empty());
}

TEST(HttpRequestTest, TwoHosts_AreNone) {
    THttpReader reader;
    EXPECT_EQ(reader.Feed("GET / HTTP/1.1\r\nHost: localhost\r\nHost: 127.0.0.1\r\n\r\n"), 200);
    EXPECT_EQ(reader.Request().host, "");
}

TEST(HttpRequestTest, WhatIsNoRequest_IsRefused) {
    EXPECT_EQ(THttpReader().Feed("\x04\x0D\x14\x5C\x5C\x03\r\n\r\n"), 400);
    EXPECT_EQ(THttpReader().Feed("GET /\r\n\r\n"), 400);
    EXPECT_EQ(THttpReader().Feed("POST / HTTP/1.1\r\nContent-Length: x\r\n\r\n"), 400);
}

TEST(HttpRequestTest, ALongHeadAndALongBody_AreRefused) {
    const std::string field = "X: " + std::string(9000, 'a') + "\r\n";
    EXPECT_EQ(THttpReader().Feed("GET / HTTP/1.1\r\n" + field), 431);
    EXPECT_EQ(THttpReader().Feed("POST / HTTP/1.1\r\nContent-Length: 4097\r\n\r\n"), 413);
    EXPECT_EQ(THttpReader().Feed("POST / HTTP/1.1\r\nContent-Length: 4096\r\n\r\n"), 0);
}

TEST(HttpRequestTest, AForm_IsDecoded) {
    EXPECT_EQ(ParseForm("fault=error%2Ccommand%3d0x50&on=1"),
              (TFormFields{{"fault", "error,command=0x50"}, {"on", "1"}}));
    EXPECT_EQ(ParseForm("a=x+y%21&&b&=c&a%"),
              (TFormFields{{"a", "x y!"}, {"b", ""}, {"", "c"}, {"a%", ""}}));
    EXPECT_EQ(ParseForm("a=%2&a=%zz&b=100%25"), (TFormFields{{"a", "%zz"}, {"b", "100%"}}));
    EXPECT_TRUE(ParseForm("").empty());
}

TEST(HttpRequestTest, AResponse_EndsTheConnectionAndIsKeptNowhere) {
    const THttpResponse response{
        .status = 303, .contentType = "text/plain", .headers = "Location: /\r\n", .body = "ab"};
    const std::string head =
        "HTTP/1.1 303 See Other\r\n"
        "Content-Type: text/plain\r\n"
        "Content-Length: 2\r\n"
        "Cache-Control: no-store\r\n"
        "X-Content-Type-Options: nosniff\r\n"
        "Referrer-Policy: same-origin\r\n"
        "Connection: close\r\n"
        "Location: /\r\n\r\n";
    EXPECT_EQ(ResponseBytes(response), head + "ab");
    EXPECT_EQ(ResponseBytes(response, false), head);
}

}  // namespace
}  // namespace tolvane::simulator

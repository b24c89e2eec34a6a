#include "simulator/PageServer.h"

#include <gtest/gtest.h>

#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <memory>

#include "Bytes.h"
#include "StreamClient.h"
#include "simulator/VirtualScale.h"

namespace tolvane::simulator {
namespace {

using asio::ip::tcp;

class TPageClient : public TStreamClient<tcp::socket> {
public:
    explicit TPageClient(std::uint16_t port) {
        Stream().connect({asio::ip::make_address("127.0.0.1"), port});
    }
    void Say(const std::string& text) { asio::write(Stream(), asio::buffer(text)); }
    // All until the server ends the connection.
    std::string Rest() {
        const TBytes bytes = Receive(1'000'000);
        return {bytes.begin(), bytes.end()};
    }
};

// A scale with one article and its page.
class PageServerTest : public testing::Test {
protected:
    PageServerTest() : scale_(Options()) {
        scale_.Start();
        page_ = std::make_unique<TPageServer>(
            TPageOptions{},
            TPageScale{
                .state = [this] { return scale_.State(); },
                .endpoints = [this] { return scale_.Endpoints(); },
                .requests = [this] { return log_.Lines(); },
                .setFaults = [this](const TFaultScript& faults) { scale_.SetFaults(faults); }},
            TFaultScript{});
    }

    std::string Host() const { return "127.0.0.1:" + std::to_string(page_->Port()); }

    std::string Ask(const std::string& request) {
        TPageClient client(page_->Port());
        client.Say(request);
        return client.Rest();
    }

    std::string Get(const std::string& target, const std::string& host) {
        return Ask("GET " + target + " HTTP/1.1\r\nHost: " + host + "\r\n\r\n");
    }

    std::string Post(const std::string& fields, const std::string& form) {
        return Ask("POST /faults HTTP/1.1\r\nHost: " + Host() + "\r\n" + fields +
                   "Content-Length: " + std::to_string(form.size()) + "\r\n\r\n" + form);
    }

    // What the scale answers a change to programming mode.
    TBytes AskScale(std::size_t length) {
        TPageClient client(scale_.Port());
        return client.Ask("04 0D 14 4A 4A 03", length);
    }

    static constexpr const char* kForm = "Content-Type: application/x-www-form-urlencoded\r\n";

    TScaleOptions Options() {
        TScaleOptions options;
        options.scale.codeTable = TCodeTable::Windows;
        options.initialState.emplace();
        TArticle& article = options.initialState->articles[7];
        article.number = 7;
        article.price = 1234;
        article.texts[0].bytes = Bytes("3C 62 3E");
        article.texts[5].bytes = Bytes("32 32 30 31 32");
        options.onExchange = [this](const TBytes& frame, const TReplyPlan& plan) {
            log_.Add(frame, plan);
        };
        return options;
    }

    TRequestLog log_{TCodeTable::Windows};
    TVirtualScale scale_;
    std::unique_ptr<TPageServer> page_;
};

bool Contains(const std::string& text, std::string_view part) {
    return text.find(part) != text.npos;
}

bool IsStatus(const std::string& response, int status) {
    return response.starts_with("HTTP/1.1 " + std::to_string(status) + " ");
}

TEST_F(PageServerTest, ThePage_ShowsTheScaleAndForbidsAllElse) {
    const std::string response = Get("/", Host());
    EXPECT_TRUE(IsStatus(response, 200));
    EXPECT_TRUE(Contains(response, "\r\nContent-Security-Policy: default-src 'none'; "));
    EXPECT_TRUE(Contains(response, "<dt>Model</dt><dd>EVL</dd>"));
    EXPECT_TRUE(Contains(response, "<td data-title=\"Name\">&lt;b&gt;</td>"));
    EXPECT_TRUE(Contains(response, "aria-label=\"Barcode 2022012005000\""));
    const std::size_t body = response.find("\r\n\r\n") + 4;
    EXPECT_TRUE(Contains(response,
                         "\r\nContent-Length: " + std::to_string(response.size() - body) + "\r\n"));
    EXPECT_TRUE(response.ends_with("</html>\n"));
}

TEST_F(PageServerTest, EachPage_HasANonceOfItsOwn) {
    const auto nonce = [](const std::string& response) {
        return response.substr(response.find("'nonce-"), 40);
    };
    EXPECT_NE(nonce(Get("/", Host())), nonce(Get("/", Host())));
}

TEST_F(PageServerTest, TheQuery_ChoosesGramsAndTheFirstArticle) {
    EXPECT_TRUE(Contains(Get("/content?grams=1234", Host()), "Barcode 2022012012343"));
    EXPECT_TRUE(Contains(Get("/content?grams=x&from=-3", Host()), "Barcode 2022012005000"));
    EXPECT_TRUE(Contains(Get("/content?grams=100000", Host()), "value=\"99999\""));
    EXPECT_FALSE(Contains(Get("/content?from=8", Host()), "label-7"));
}

TEST_F(PageServerTest, TheRequests_AppearAsTheyCome) {
    EXPECT_EQ(AskScale(7), Bytes("02 0D 14 4A 14 4A 03"));
    const std::string content = Get("/content", Host());
    EXPECT_TRUE(Contains(content, "<td data-title=\"Command\">SetPrgMode</td>"));
    EXPECT_TRUE(Contains(content, "<dd class=\"mode\">programming</dd>"));
    EXPECT_FALSE(Contains(content, "<html"));
}

TEST_F(PageServerTest, AFault_IsSwitchedOnAndOff) {
    const std::string own = "Origin: http://" + Host() + "\r\nSec-Fetch-Site: same-origin\r\n";
    const std::string response = Post(own + kForm, "fault=error%2Ccode%3D7&on=1");
    EXPECT_TRUE(IsStatus(response, 303));
    EXPECT_TRUE(Contains(response, "\r\nLocation: /?from=1&grams=500#faults\r\n"));
    EXPECT_EQ(AskScale(7), Bytes("02 0D 14 4A 1B 51 03"));
    EXPECT_TRUE(Contains(Get("/content", Host()), "class=\"on\">error,code=7<"));

    EXPECT_TRUE(IsStatus(Post(own + kForm, "fault=error%2Ccode%3D7&on=0"), 303));
    EXPECT_EQ(AskScale(7), Bytes("02 0D 14 4A 14 4A 03"));
}

TEST_F(PageServerTest, AnotherPage_ChangesNothing) {
    const std::string form = "fault=error%2Ccode%3D7&on=1";
    for (const std::string origin :
         {"http://evil.example", "null", "http://127.0.0.1", "https://127.0.0.1:1"})
        EXPECT_TRUE(IsStatus(Post("Origin: " + origin + "\r\n" + kForm, form), 403)) << origin;
    for (const std::string site : {"cross-site", "same-site"})
        EXPECT_TRUE(IsStatus(Post("Sec-Fetch-Site: " + site + "\r\n" + kForm, form), 403)) << site;
    EXPECT_TRUE(IsStatus(Post("Content-Type: text/plain\r\n", form), 415));
    EXPECT_EQ(AskScale(7), Bytes("02 0D 14 4A 14 4A 03"));
}

TEST_F(PageServerTest, AProgramWithoutOrigin_MaySwitch) {
    EXPECT_TRUE(IsStatus(Post(kForm, "fault=error%2Ccode%3D7&on=1"), 303));
    EXPECT_EQ(AskScale(7), Bytes("02 0D 14 4A 1B 51 03"));
}

TEST_F(PageServerTest, AName_IsNotAnswered) {
    for (const std::string host :
         {"evil.example", "evil.example:80", "", "127.0.0.1.evil.example", "127.0.0.1:80:80",
          "127.0.0.1:x", "[::1", "[", "localhost.", "127.0.0.1@evil.example"}) {
        EXPECT_TRUE(IsStatus(Get("/", host), 403)) << host;
        EXPECT_TRUE(IsStatus(Get("/content", host), 403)) << host;
    }
    for (const std::string host :
         {"127.0.0.1", "localhost", "localhost:80", "[::1]:80", "10.1.2.3"})
        EXPECT_TRUE(IsStatus(Get("/content", host), 200)) << host;
}

TEST_F(PageServerTest, WhatIsNotThere_IsRefused) {
    EXPECT_TRUE(IsStatus(Get("/favicon.ico", Host()), 404));
    EXPECT_TRUE(IsStatus(Get("/faults", Host()), 405));
    EXPECT_TRUE(IsStatus(Ask("DELETE / HTTP/1.1\r\nHost: " + Host() + "\r\n\r\n"), 405));
    EXPECT_TRUE(IsStatus(Post(kForm, "fault=slow"), 400));
    EXPECT_TRUE(IsStatus(Post(kForm, "fault=slow&on=2"), 400));
    const std::string response = Post(kForm, "fault=%3Cscript%3E&on=1");
    EXPECT_TRUE(IsStatus(response, 400));
    EXPECT_TRUE(Contains(response, "Content-Type: text/plain;"));
}

TEST_F(PageServerTest, AHead_HasNoBody) {
    const std::string response = Ask("HEAD /content HTTP/1.1\r\nHost: " + Host() + "\r\n\r\n");
    EXPECT_TRUE(IsStatus(response, 200));
    EXPECT_TRUE(response.ends_with("\r\n\r\n"));
}

TEST_F(PageServerTest, WhatIsNoHttp_IsRefusedAndTheNextIsAnswered) {
    EXPECT_TRUE(IsStatus(Ask("\x04\x0D\x14\x5C\x5C\x03\r\n\r\n"), 400));
    EXPECT_TRUE(IsStatus(Ask("GET / HTTP/1.1\r\nX: " + std::string(100'000, 'a')), 431));
    EXPECT_TRUE(IsStatus(Get("/", Host()), 200));
}

TEST_F(PageServerTest, ManyIdleConnections_AreBounded) {
    std::vector<std::unique_ptr<TPageClient>> idle;
    for (int i = 0; i < 32; ++i)
        idle.push_back(std::make_unique<TPageClient>(page_->Port()));
    TPageClient surplus(page_->Port());
    EXPECT_EQ(surplus.Rest(), "");
    idle.front()->Say("GET /content HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_TRUE(IsStatus(idle.front()->Rest(), 200));
}

TEST_F(PageServerTest, TheEnd_ClosesWhatIsOpen) {
    TPageClient idle(page_->Port());
    TPageClient half(page_->Port());
    half.Say("GET / HT");
    EXPECT_TRUE(IsStatus(Get("/", Host()), 200));
    page_.reset();
    EXPECT_EQ(idle.Rest(), "");
    EXPECT_EQ(half.Rest(), "");
}

TEST(PageServerAddressTest, AnAddressOfItsOwn_IsTold) {
    const TPageServer page({.host = "127.0.0.2"}, {}, {});
    EXPECT_EQ(page.Endpoint(), "http 127.0.0.2:" + std::to_string(page.Port()));
    EXPECT_THROW(TPageServer({.host = "127.0.0.2", .port = page.Port()}, {}, {}),
                 std::system_error);
    EXPECT_THROW(TPageServer({.host = "localhost"}, {}, {}), std::system_error);
}

}  // namespace
}  // namespace tolvane::simulator

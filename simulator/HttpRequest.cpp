#include "simulator/HttpRequest.h"

#include <algorithm>
#include <array>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>
#include <cstdint>

#include "simulator/Hex.h"

namespace tolvane::simulator {

namespace {

namespace http = boost::beast::http;

constexpr std::uint32_t kLongestHeader = 8192;
constexpr std::uint64_t kLongestContent = 4096;

struct TStatusText {
    int status;
    std::string_view text;
};
constexpr std::array<TStatusText, 9> kStatusTexts = {{{200, "OK"},
                                                      {303, "See Other"},
                                                      {400, "Bad Request"},
                                                      {403, "Forbidden"},
                                                      {404, "Not Found"},
                                                      {405, "Method Not Allowed"},
                                                      {413, "Content Too Large"},
                                                      {415, "Unsupported Media Type"},
                                                      {431, "Request Header Fields Too Large"}}};

std::string_view StatusText(int status) {
    for (const TStatusText& entry : kStatusTexts) {
        if (entry.status == status) return entry.text;
    }
    return "Error";
}

std::string Decoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte =
            text[i] == '%' && i + 2 < text.size() ? FromHex(text.substr(i + 1, 2)) : std::nullopt;
        if (byte && byte->size() == 1) {
            decoded += static_cast<char>(byte->front());
            i += 2;
        } else {
            decoded += text[i] == '+' ? ' ' : text[i];
        }
    }
    return decoded;
}

int StatusOf(const boost::beast::error_code& error) {
    if (error == http::error::header_limit) return 431;
    if (error == http::error::body_limit) return 413;
    return 400;
}

template <typename TView>
std::string Text(const TView& view) {
    return {view.data(), view.size()};
}

}  // namespace

struct THttpReader::TParser {
    http::request_parser<http::string_body> message;
    std::string unread;
};

TFormFields ParseForm(std::string_view text) {
    TFormFields fields;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('&'), text.size());
        const std::string_view field = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (field.empty()) continue;
        const std::size_t equals = std::min(field.find('='), field.size());
        const std::string_view value = field.substr(std::min(equals + 1, field.size()));
        fields[Decoded(field.substr(0, equals))] = Decoded(value);
    }
    return fields;
}

std::string ResponseBytes(const THttpResponse& response, bool withBody) {
    std::string bytes = "HTTP/1.1 " + std::to_string(response.status) + " " +
                        std::string(StatusText(response.status)) +
                        "\r\n"
                        "Content-Type: " +
                        response.contentType +
                        "\r\n"
                        "Content-Length: " +
                        std::to_string(response.body.size()) +
                        "\r\n"
                        "Cache-Control: no-store\r\n"
                        "X-Content-Type-Options: nosniff\r\n"
                        "Referrer-Policy: same-origin\r\n"
                        "Connection: close\r\n" +
                        response.headers + "\r\n";
    if (withBody) bytes += response.body;
    return bytes;
}

THttpReader::THttpReader() : parser_(std::make_unique<TParser>()) {
    parser_->message.header_limit(kLongestHeader);
    parser_->message.body_limit(kLongestContent);
    parser_->message.eager(true);
}

THttpReader::~THttpReader() = default;

int THttpReader::Feed(std::string_view bytes) {
    std::string& unread = parser_->unread;
    unread += bytes;
    while (!unread.empty() && !parser_->message.is_done()) {
        boost::beast::error_code error;
        const std::size_t used = parser_->message.put(boost::asio::buffer(unread), error);
        unread.erase(0, used);
        if (error == http::error::need_more) return 0;
        if (error) return StatusOf(error);
    }
    if (!parser_->message.is_done()) return 0;
    Take();
    return 200;
}

void THttpReader::Take() {
    const auto& message = parser_->message.get();
    const std::string target = Text(message.target());
    const std::size_t mark = std::min(target.find('?'), target.size());
    request_.method = Text(message.method_string());
    request_.path = target.substr(0, mark);
    request_.query = ParseForm(std::string_view(target).substr(std::min(mark + 1, target.size())));
    if (message.count(http::field::host) == 1) request_.host = Text(message[http::field::host]);
    request_.origin = Text(message[http::field::origin]);
    request_.fetchSite = Text(message["Sec-Fetch-Site"]);
    request_.contentType = Text(message[http::field::content_type]);
    request_.body = message.body();
}

}  // namespace tolvane::simulator

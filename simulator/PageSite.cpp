#include "simulator/PageSite.h"

#include <algorithm>
#include <array>
#include <asio/ip/address.hpp>
#include <charconv>
#include <exception>
#include <random>
#include <utility>

#include "simulator/Hex.h"

namespace tolvane::simulator {

namespace {

THttpResponse TextAnswer(int status, std::string text) {
    return {.status = status, .contentType = "text/plain; charset=utf-8", .body = std::move(text)};
}

bool IsPort(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// "127.0.0.1:8080", "[::1]:8080", "localhost": an address, or the one name that means this
// computer.
bool IsOwnHost(std::string_view host) {
    std::string name;
    std::string_view rest;
    if (host.starts_with('[')) {
        const std::size_t end = host.find(']');
        if (end == host.npos) return false;
        name = host.substr(1, end - 1);
        rest = host.substr(end + 1);
    } else {
        const std::size_t colon = std::min(host.find(':'), host.size());
        name = host.substr(0, colon);
        rest = host.substr(colon);
    }
    if (!rest.empty() && (rest.front() != ':' || !IsPort(rest.substr(1)))) return false;
    if (name == "localhost") return true;
    std::error_code error;
    asio::ip::make_address(name, error);
    return !error;
}

// Programs that are no browsers send neither of the two.
bool IsFromThisPage(const THttpRequest& request) {
    if (!request.origin.empty() && request.origin != "http://" + request.host) return false;
    return request.fetchSite.empty() || request.fetchSite == "same-origin" ||
           request.fetchSite == "none";
}

int NumberField(const TFormFields& fields, const std::string& name, int otherwise, int low,
                int high) {
    const auto found = fields.find(name);
    if (found == fields.end()) return otherwise;
    const std::string& text = found->second;
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return otherwise;
    return std::clamp(value, low, high);
}

int FirstArticle(const THttpRequest& request) {
    return NumberField(request.query, "from", 1, 1, 65535);
}

int Grams(const THttpRequest& request) {
    return NumberField(request.query, "grams", TPlate().grams, 0, TPlate::kMostGrams);
}

std::string Nonce() {
    std::random_device random;
    TBytes bytes(16);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return ToHex(bytes);
}

}  // namespace

TPageSite::TPageSite(TPageScale scale, const TFaultScript& faults, std::string barcodePrefix)
    : scale_(std::move(scale)), switches_(faults), barcodePrefix_(std::move(barcodePrefix)) {}

THttpResponse TPageSite::Answer(const THttpRequest& request) {
    if (!IsOwnHost(request.host))
        return TextAnswer(403, "Open this page by its address, not by a name.\n");
    const bool reads = request.method == "GET" || request.method == "HEAD";
    if (request.path == "/faults") {
        if (request.method != "POST") return TextAnswer(405, "This takes POST.\n");
        return SwitchFault(request);
    }
    if (request.path != "/" && request.path != "/content") return TextAnswer(404, "Not found.\n");
    if (!reads) return TextAnswer(405, "This takes GET.\n");
    if (request.path == "/content") return {.body = RenderContent(Model(request))};
    return Whole(request);
}

TPageModel TPageSite::Model(const THttpRequest& request) const {
    TPageModel model;
    model.state = scale_.state();
    model.endpoints = scale_.endpoints();
    model.requests = scale_.requests();
    model.faults = switches_.All();
    model.from = FirstArticle(request);
    model.plate.grams = Grams(request);
    model.plate.barcodePrefix = barcodePrefix_;
    return model;
}

THttpResponse TPageSite::Whole(const THttpRequest& request) const {
    const std::string nonce = Nonce();
    THttpResponse response{.body = RenderPage(Model(request), nonce)};
    response.headers = "Content-Security-Policy: default-src 'none'; style-src 'nonce-" + nonce +
                       "'; script-src 'nonce-" + nonce +
                       "'; connect-src 'self'; img-src data:; form-action 'self'; "
                       "base-uri 'none'; frame-ancestors 'none'\r\n";
    return response;
}

THttpResponse TPageSite::SwitchFault(const THttpRequest& request) {
    if (!IsFromThisPage(request)) return TextAnswer(403, "Only this page may change the scale.\n");
    if (!request.contentType.starts_with("application/x-www-form-urlencoded"))
        return TextAnswer(415, "This takes a form.\n");
    const TFormFields form = ParseForm(request.body);
    const auto fault = form.find("fault");
    const auto on = form.find("on");
    if (fault == form.end() || on == form.end() || (on->second != "0" && on->second != "1"))
        return TextAnswer(400, "This takes the fields \"fault\" and \"on\".\n");
    try {
        switches_.Set(fault->second, on->second == "1");
    } catch (const std::exception& error) {
        return TextAnswer(400, std::string(error.what()) + "\n");
    }
    scale_.setFaults(switches_.Script());
    const std::string from = std::to_string(FirstArticle(request));
    const std::string grams = std::to_string(Grams(request));
    return {.status = 303,
            .headers = "Location: /?from=" + from + "&grams=" + grams + "#faults\r\n"};
}

}  // namespace tolvane::simulator

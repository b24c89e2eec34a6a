#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace tolvane::simulator {

using TFormFields = std::map<std::string, std::string>;

// What the page's server needs of a request. A header that is not there is empty; so is `host` when
// it comes more than once.
struct THttpRequest {
    std::string method{};
    std::string path{};
    TFormFields query{};
    std::string host{};
    std::string origin{};
    std::string fetchSite{};  // Sec-Fetch-Site
    std::string contentType{};
    std::string body{};
};

struct THttpResponse {
    int status = 200;
    std::string contentType = "text/html; charset=utf-8";
    std::string headers{};  // more of them, each with its line end
    std::string body{};
};

// "a=1&b=x+y%21"; of a name that comes twice the last value.
TFormFields ParseForm(std::string_view text);

// The bytes of a response, after which the connection ends. `withBody` false: as HEAD wants it.
std::string ResponseBytes(const THttpResponse& response, bool withBody = true);

// Reads one request from the bytes of a connection. Head and body have bounds.
class THttpReader {
public:
    THttpReader();
    ~THttpReader();
    THttpReader(const THttpReader&) = delete;
    THttpReader& operator=(const THttpReader&) = delete;

    // 0: more bytes are needed; 200: Request() is complete; otherwise the status that refuses it.
    int Feed(std::string_view bytes);
    const THttpRequest& Request() const { return request_; }

private:
    struct TParser;

    void Take();

    std::unique_ptr<TParser> parser_;
    THttpRequest request_;
};

}  // namespace tolvane::simulator

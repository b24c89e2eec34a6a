#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleTable.h"
#include "scale/DevElicomScaleUnit.h"
#include "system/Clock.h"
#include "upload/RunView.h"
#include "upload/ScaleFactory.h"

namespace tolvane::test {

// What happened, in order, one text (UTF-8) per event: each request that reached a scale as the hex
// bytes of command and data, each pause, and whatever the view was to show.
using TEvents = std::vector<std::string>;

// "4C 00 0C": bytes as two upper-case hex digits with blanks between.
std::string Hex(const std::vector<std::uint8_t>& bytes);
// The event of writing a text parameter of an article: the text's bytes, padded with blanks to
// `length`; a length of 0 pads nothing.
std::string Param(int plu, int parameter, std::string_view bytes, std::size_t length);

struct TRequest {
    std::uint8_t address = 0;
    std::uint8_t command = 0;
    std::vector<std::uint8_t> data;
    int plu = 0;  // the article's number in an article command
};

// A scale that accepts every request, unless a test changes its answers.
struct TFakeScale {
    std::string version = "1.23";
    int maxPlu = 3000;
    int mode = 0;
    std::string openError;  // not empty: the channel does not open
    // The error code of the answer, asked once per request.
    std::function<std::uint8_t(const TRequest&)> errorCode;
    bool wrongAnswers = false;  // to every request
    bool wholeFrames = false;   // requests are recorded as they are on the wire
    std::vector<TRequest> requests;
};

// A clock that moves only by pauses, which it records as events.
class TFakeClock : public TClock {
public:
    explicit TFakeClock(TEvents& events) : events_(events) {}
    TTimePoint Now() const override { return now_; }
    void Sleep(TMilliseconds pause) override;

private:
    TEvents& events_;
    TTimePoint now_{};
};

class TRecordingView : public TRunView {
public:
    explicit TRecordingView(TEvents& events) : events_(events) {}
    void ClearLog() override {
        events_.emplace_back("clear");
        if (onClear) onClear();
    }
    void Log(std::string line) override;
    void SetConnection(std::string text) override;
    void SetProgress(std::string text) override;
    void ShowCount(const TRunCount& count) override;
    void SetRunning(bool running) override {
        events_.emplace_back(running ? "running" : "at rest");
    }
    void SetChoicesEnabled(bool enabled) override {
        events_.emplace_back(enabled ? "choices on" : "choices off");
    }
    void ShowRunError(std::string text) override;
    void ShowMemoryError() noexcept override { events_.emplace_back("out of memory"); }

    std::vector<TRunCount> counts;
    bool countsAreEvents = false;  // also "count:1 of 2"

    std::function<void()> onClear;
    std::function<void(const std::string&)> onLog;
    std::function<void()> onConnection;
    std::function<void(const std::string&)> onProgress;
    std::function<void()> onRunError;

private:
    TEvents& events_;
};

// Gives each driver the next scale of `scales`, and the last one again when there are no more.
// Records "open TCP 10.0.0.1:1001" and "freed" as drivers come and go.
class TFakeFactory : public TScaleFactory {
public:
    TFakeFactory(TEvents& events, TClock& clock) : events_(events), clock_(clock) {}
    std::unique_ptr<TElicomScale> CreateRS232(std::int32_t portNumber,
                                              std::int32_t bitsPerSecond) override;
    std::unique_ptr<TElicomScale> CreateTCP(const std::string& host, std::int32_t port) override;
    std::unique_ptr<TElicomScale> CreateUDP(const std::string& host) override;

    std::vector<std::shared_ptr<TFakeScale>> scales;
    std::function<void()> onOpen;

private:
    std::unique_ptr<TElicomScale> Create(const std::string& description, bool serial);

    TEvents& events_;
    TClock& clock_;
    std::size_t next_ = 0;
};

// One row of the article table. With its defaults every scale takes it.
struct TArticle {
    std::int32_t number = 101;
    std::int32_t scaleNumber = 12;
    std::string_view name;
    std::string_view ecrName;
    std::string_view labelName;
    std::string_view barcode = "22012";
    std::string_view bestBefore = "5";
    std::string_view onlyWhole = "0";
    double retail = 12.34;
    double wholesale = 10.5;
    std::string_view forScales = "0";
    bool promotion = false;
    double promotionPrice = 0;
    std::string_view comment1;
    std::string_view comment2;
    std::string_view comment3;
    std::string_view shipment;
};

// An article for every scale, with a price of 12.34 and the label name "B".
TArticle Goods(std::int32_t number, std::string_view name);
// Articles 12 ("Домати") and 7 ("Яйца").
std::vector<TArticle> TwoGoods();
// `count` articles named "A", numbered from 1.
std::vector<TArticle> ManyGoods(int count);

std::shared_ptr<const TArticleTable> TableOf(const std::vector<TArticle>& articles);

// Only the events that begin with one of the prefixes.
TEvents Filtered(const TEvents& events, const std::vector<std::string>& prefixes);

}  // namespace tolvane::test

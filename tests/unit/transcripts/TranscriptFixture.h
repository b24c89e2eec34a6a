#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/ScaleCore.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/upload/NullView.h"
#include "tests/support/upload/UploadFixture.h"
#include "upload/ScaleRun.h"

namespace tolvane::test {

// Keeps what a run shows, as text (UTF-8): the log with a line feed after each entry, and the two
// labels' texts in order.
class TTranscriptView : public TNullView {
public:
    void ClearLog() override { log.clear(); }
    void Log(std::string line) override;
    void SetConnection(std::string text) override;
    void SetProgress(std::string text) override;
    void ShowRunError(std::string text) override;

    std::string log;
    std::vector<std::string> connections;
    std::vector<std::string> progress;
    std::function<void(const std::string&)> onProgress;
};

// A virtual scale that a run can reach.
struct TShopScale {
    std::unique_ptr<simulator::TScaleCore> core;
    std::string openError;  // not empty: opening its channel fails so
};

// Makes drivers that talk straight to virtual scales, by address: "COM3", "10.0.0.3".
class TShopFactory : public TScaleFactory {
public:
    explicit TShopFactory(TClock& clock) : clock_(clock) {}
    std::unique_ptr<TElicomScale> CreateRS232(std::int32_t portNumber,
                                              std::int32_t bitsPerSecond) override;
    std::unique_ptr<TElicomScale> CreateTCP(const std::string& host, std::int32_t port) override;
    std::unique_ptr<TElicomScale> CreateUDP(const std::string& host) override;

    std::map<std::string, TShopScale> scales;
    std::vector<std::string> reached;  // "TCP 10.0.0.3:1001", in order

private:
    std::unique_ptr<TElicomScale> Create(const std::string& address, bool serial);

    TClock& clock_;
};

// A shop with articles and virtual scales; runs over all its scales give the log as text.
class TranscriptTest : public ::testing::Test {
protected:
    TranscriptTest();

    // Adds scale n, the n-th: "Везна n", checked, at 10.0.0.n:1001 or, serial, at COMn with the
    // protocol address n. An EVL reports version 1.04, 4000 articles and label mode 2.
    TScaleObj& AddScale(simulator::TModel model = simulator::TModel::Evl,
                        std::uint8_t transport = kCommTcp);
    void AddScales(int count);
    void SetCapacity(int scale, int capacity);
    // Makes opening the scale's channel fail with this error.
    void SetDead(int scale, std::string_view error);
    void SetFaults(int scale, const std::vector<simulator::TFault>& faults);
    // The user presses the stop button when this label text comes for the n-th time.
    void StopAt(std::string_view progress, int time);
    simulator::TScaleState State(int scale);

    std::string Write(const std::vector<TArticle>& articles, TLineChoices choices = {});
    std::string DeleteListed(const std::vector<TArticle>& articles);
    std::string DeleteEverything();

    std::vector<TScaleObj> items_;
    TTranscriptView view_;
    TRecordingClock clock_;
    TShopFactory factory_{clock_};
    TRunStop stop_;

private:
    std::string Listed(const std::vector<TArticle>& articles, TLineChoices choices, bool write);
    TShopScale& Scale(int scale);
    TScaleRun Run();

    TRegionalSettings regional_;
};

// Parts of the log. Of `count` articles that a run looks at, `valid` make a line.
std::string Summary(int count, int valid);
std::string Start(std::string_view scale);
inline constexpr std::string_view kConnected = "Осъществена връзка с устройството за комуникация\n";
inline constexpr std::string_view kSeparator = "-----------------------------------------\n";

}  // namespace tolvane::test

#include "TranscriptFixture.h"

#include <utility>

#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/CoreChannel.h"
#include "text/Cp1251.h"
#include "upload/RunMarks.h"

namespace tolvane::test {
namespace {

std::string Address(int scale, std::uint8_t transport) {
    return (transport == kCommSerial ? "COM" : "10.0.0.") + std::to_string(scale);
}

std::int32_t ScaleType(simulator::TModel model) {
    switch (model) {
        case simulator::TModel::Ets:
            return kScaleTypeEts;
        case simulator::TModel::S300:
            return kScaleTypeS300;
        default:
            return kScaleTypeEvl;
    }
}

}  // namespace

void TTranscriptView::Log(std::string line) {
    log += ToUtf8(line) + "\n";
}

void TTranscriptView::SetConnection(std::string text) {
    connections.push_back(ToUtf8(text));
}

void TTranscriptView::SetProgress(std::string text) {
    progress.push_back(ToUtf8(text));
    if (onProgress) onProgress(progress.back());
}

void TTranscriptView::ShowRunError(std::string text) {
    ADD_FAILURE() << ToUtf8(text);
}

std::unique_ptr<TElicomScale> TShopFactory::CreateRS232(std::int32_t portNumber,
                                                        std::int32_t bitsPerSecond) {
    const std::string address = Address(portNumber, kCommSerial);
    reached.push_back(address + " " + std::to_string(bitsPerSecond));
    return Create(address, true);
}

std::unique_ptr<TElicomScale> TShopFactory::CreateTCP(const std::string& host, std::int32_t port) {
    reached.push_back("TCP " + host + ":" + std::to_string(port));
    return Create(host, false);
}

std::unique_ptr<TElicomScale> TShopFactory::CreateUDP(const std::string& host) {
    reached.push_back("UDP " + host);
    return Create(host, false);
}

std::unique_ptr<TElicomScale> TShopFactory::Create(const std::string& address, bool serial) {
    TShopScale& scale = scales.at(address);
    auto channel = std::make_unique<TCoreChannel>(clock_, *scale.core);
    channel->openError = scale.openError;
    return std::make_unique<TElicomScale>(std::move(channel), serial, clock_);
}

TranscriptTest::TranscriptTest() {
    regional_.decimalSeparator = ',';
}

TScaleObj& TranscriptTest::AddScale(simulator::TModel model, std::uint8_t transport) {
    const int number = static_cast<int>(items_.size()) + 1;
    TScaleObj item{NetworkScale(number, std::string("Везна "_cp1251) + std::to_string(number),
                                Address(number, transport), 1001)};
    item.Rec.CommType = transport;
    item.Rec.ScaleType = ScaleType(model);
    simulator::TCoreOptions options;
    options.scale = simulator::DefaultProperties(model);
    options.scale.labelMode = 2;
    if (transport == kCommSerial) {
        item.Rec.ScaleAddr = static_cast<std::uint8_t>(number);
        options.scale.address = number;
    }
    factory_.scales[Address(number, transport)].core =
        std::make_unique<simulator::TScaleCore>(std::move(options));
    items_.push_back(item);
    return items_.back();
}

void TranscriptTest::AddScales(int count) {
    for (int i = 0; i < count; ++i)
        AddScale();
}

void TranscriptTest::SetCapacity(int scale, int capacity) {
    simulator::TCoreOptions options;
    options.scale.capacity = capacity;
    Scale(scale).core = std::make_unique<simulator::TScaleCore>(std::move(options));
}

void TranscriptTest::SetDead(int scale, std::string_view error) {
    Scale(scale).openError = error;
}

void TranscriptTest::SetFaults(int scale, const std::vector<simulator::TFault>& faults) {
    Scale(scale).core->SetFaults({faults});
}

void TranscriptTest::StopAt(std::string_view progress, int time) {
    view_.onProgress = [this, progress, time, came = 0](const std::string& text) mutable {
        if (text == progress && ++came == time) stop_.Stop();
    };
}

simulator::TScaleState TranscriptTest::State(int scale) {
    return Scale(scale).core->State();
}

std::string TranscriptTest::Write(const std::vector<TArticle>& articles, TLineChoices choices) {
    return Listed(articles, choices, true);
}

std::string TranscriptTest::DeleteListed(const std::vector<TArticle>& articles) {
    return Listed(articles, {}, false);
}

std::string TranscriptTest::DeleteEverything() {
    Run().RunDeleteEverything(items_, TRunMarks(items_));
    return view_.log;
}

std::string TranscriptTest::Listed(const std::vector<TArticle>& articles, TLineChoices choices,
                                   bool write) {
    const auto table = TableOf(articles);
    Run().RunListed(items_, {table, table->Order()}, choices, write);
    return view_.log;
}

TShopScale& TranscriptTest::Scale(int scale) {
    return factory_.scales.at(items_.at(static_cast<std::size_t>(scale) - 1).Rec.TCPAddress.Str());
}

TScaleRun TranscriptTest::Run() {
    return {factory_, clock_, view_, stop_, regional_};
}

std::string Summary(int count, int valid) {
    return "Обработени " + std::to_string(count) + " артикула.\nВалидни са " +
           std::to_string(valid) + " артикула.\nЩе бъдат записани само валидните артикули\n";
}

std::string Start(std::string_view scale) {
    return std::string(kSeparator) + "Старт на запис във везна: " + std::string(scale) + "\n";
}

}  // namespace tolvane::test

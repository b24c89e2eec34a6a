#include "tests/support/upload/UploadFixture.h"

#include <gtest/gtest.h>

#include <utility>

#include "simulator/Hex.h"
#include "tests/support/scales/WireFrames.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

TCmdBuffer DecodeRequest(const TCmdBuffer& frame) {
    EXPECT_GE(frame.size(), 2U);
    EXPECT_EQ(frame.front(), 0x04);
    EXPECT_EQ(frame.back(), 0x03);
    return BodyOf(frame);
}

class TFakeChannel : public TDevComm {
public:
    TFakeChannel(TEvents& events, std::string description, std::shared_ptr<TFakeScale> scale,
                 std::function<void()> onOpen)
        : events_(events),
          description_(std::move(description)),
          scale_(std::move(scale)),
          onOpen_(std::move(onOpen)) {}
    ~TFakeChannel() override { events_.emplace_back("freed"); }

    std::string GetDescription() const override { return description_; }
    bool IsConnected() const override { return open_; }
    bool Open() override {
        events_.push_back("open " + description_);
        if (onOpen_) onOpen_();
        open_ = scale_->openError.empty();
        if (!open_) LastError = scale_->openError;
        return open_;
    }
    void Close() override { open_ = false; }
    bool SendData(const TCmdBuffer& Data) override {
        EXPECT_TRUE(open_);
        const TCmdBuffer body = DecodeRequest(Data);
        if (body.size() < 3) {
            ADD_FAILURE() << "request without a body";
            return false;
        }
        TRequest request{body[0], body[1], {body.begin() + 2, body.end() - 1}};
        if (request.data.size() >= 3) request.plu = request.data[1] + request.data[2] * 256;
        scale_->requests.push_back(request);
        events_.push_back(scale_->wholeFrames ? Hex(Data)
                                              : Hex({body.begin() + 1, body.end() - 1}));
        Answer(request);
        return true;
    }
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t, std::uint8_t, std::int32_t) override {
        Reply.clear();
        if (scale_->wrongAnswers) {
            LastError = "wrong";
            return kReadWrongAnswer;
        }
        Reply = reply_;
        return kReadOk;
    }

private:
    void Answer(const TRequest& request) {
        std::vector<std::uint8_t> data{scale_->errorCode ? scale_->errorCode(request)
                                                         : std::uint8_t{0}};
        if (request.command == 0x48) {
            data.resize(17, 0);
            for (std::size_t i = 0; i < 4 && i < scale_->version.size(); ++i)
                data[1 + i] = static_cast<std::uint8_t>(scale_->version[i]);
            data[9] = static_cast<std::uint8_t>(scale_->maxPlu % 256);
            data[10] = static_cast<std::uint8_t>(scale_->maxPlu / 256);
            data[16] = static_cast<std::uint8_t>(scale_->mode);
        }
        reply_ = ReplyTo(request.command, data, request.address);
    }

    TEvents& events_;
    std::string description_;
    std::shared_ptr<TFakeScale> scale_;
    std::function<void()> onOpen_;
    TCmdBuffer reply_;
    bool open_ = false;
};

}  // namespace

std::string Hex(const std::vector<std::uint8_t>& bytes) {
    return simulator::ToHex(bytes, " ");
}

std::string Param(int plu, int parameter, std::string_view bytes, std::size_t length) {
    if (length == 0) length = bytes.size();
    std::vector<std::uint8_t> request{0x4C,
                                      0x00,
                                      static_cast<std::uint8_t>(plu % 256),
                                      static_cast<std::uint8_t>(plu / 256),
                                      static_cast<std::uint8_t>(parameter),
                                      static_cast<std::uint8_t>(length)};
    for (std::size_t i = 0; i < length; ++i)
        request.push_back(static_cast<std::uint8_t>(i < bytes.size() ? bytes[i] : ' '));
    return Hex(request);
}

void TFakeClock::Sleep(TMilliseconds pause) {
    now_ += pause;
    events_.push_back("wait " + std::to_string(pause.count()));
}

void TRecordingView::Log(std::string line) {
    events_.push_back("log:" + ToUtf8(line));
    if (onLog) onLog(line);
}

void TRecordingView::SetConnection(std::string text) {
    events_.push_back("connection:" + ToUtf8(text));
    if (onConnection) onConnection();
}

void TRecordingView::SetProgress(std::string text) {
    events_.push_back("progress:" + ToUtf8(text));
    if (onProgress) onProgress(events_.back());
}

void TRecordingView::ShowCount(const TRunCount& count) {
    counts.push_back(count);
    if (countsAreEvents)
        events_.push_back("count:" + std::to_string(count.done) + " of " +
                          std::to_string(count.all));
}

void TRecordingView::ShowRunError(std::string text) {
    events_.push_back("error:" + ToUtf8(text));
    if (onRunError) onRunError();
}

std::unique_ptr<TElicomScale> TFakeFactory::CreateRS232(std::int32_t portNumber,
                                                        std::int32_t bitsPerSecond) {
    return Create("COM" + std::to_string(portNumber) + " " + std::to_string(bitsPerSecond), true);
}

std::unique_ptr<TElicomScale> TFakeFactory::CreateTCP(const std::string& host, std::int32_t port) {
    return Create("TCP " + host + ":" + std::to_string(port), false);
}

std::unique_ptr<TElicomScale> TFakeFactory::CreateUDP(const std::string& host) {
    return Create("UDP " + host, false);
}

std::unique_ptr<TElicomScale> TFakeFactory::Create(const std::string& description, bool serial) {
    const std::size_t index = std::min(next_++, scales.size() - 1);
    return std::make_unique<TElicomScale>(
        std::make_unique<TFakeChannel>(events_, description, scales.at(index), onOpen), serial,
        clock_);
}

TArticle Goods(std::int32_t number, std::string_view name) {
    TArticle article;
    article.number = number;
    article.scaleNumber = number;
    article.name = name;
    article.labelName = "B";
    return article;
}

std::vector<TArticle> TwoGoods() {
    return {Goods(12, "Домати"_cp1251), Goods(7, "Яйца"_cp1251)};
}

std::vector<TArticle> ManyGoods(int count) {
    std::vector<TArticle> articles;
    for (int number = 1; number <= count; ++number)
        articles.push_back(Goods(number, "A"));
    return articles;
}

std::shared_ptr<const TArticleTable> TableOf(const std::vector<TArticle>& articles) {
    auto table = std::make_shared<TArticleTable>();
    for (const TArticle& article : articles) {
        const TRowId row = table->Append();
        table->SetInteger(row, TField::PLU_NUMB, article.number);
        table->SetInteger(row, TField::PLU_SCALE_NUMB, article.scaleNumber);
        table->SetText(row, TField::PLU_NAME, article.name);
        table->SetText(row, TField::PLU_ECR_NAME, article.ecrName);
        table->SetText(row, TField::PLU_FOREGHN_NAME, article.labelName);
        table->SetText(row, TField::PLU_BARCODE, article.barcode);
        table->SetText(row, TField::LABEL_BESTBEFORE, article.bestBefore);
        table->SetText(row, TField::PRIMARYUNIT_ONLY_INT, article.onlyWhole);
        table->SetFloat(row, TField::PLU_SELL_PRICE_LV, article.retail);
        table->SetFloat(row, TField::PLU_TRADE_PRICE_LV, article.wholesale);
        table->SetText(row, TField::PLU_FORSCALES, article.forScales);
        table->SetBoolean(row, TField::HasActivePromotion, article.promotion);
        table->SetFloat(row, TField::PromoPrice, article.promotionPrice);
        table->SetText(row, TField::LABEL_COMMENT1, article.comment1);
        table->SetText(row, TField::LABEL_COMMENT2, article.comment2);
        table->SetText(row, TField::LABEL_COMMENT3, article.comment3);
        table->SetText(row, TField::SHIPMENTNUMB, article.shipment);
    }
    return table;
}

TEvents Filtered(const TEvents& events, const std::vector<std::string>& prefixes) {
    TEvents found;
    for (const std::string& event : events) {
        for (const std::string& prefix : prefixes) {
            if (event.rfind(prefix, 0) == 0) {
                found.push_back(event);
                break;
            }
        }
    }
    return found;
}

}  // namespace tolvane::test

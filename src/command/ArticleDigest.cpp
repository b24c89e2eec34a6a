#include "command/ArticleDigest.h"

#include <array>
#include <span>
#include <utility>

#include "scale/ScaleFrame.h"
#include "text/Fnv.h"
#include "upload/ArticleWriter.h"

namespace tolvane {
namespace {

constexpr std::array<std::uint8_t, 1> kAccepted = {0};

// Nothing is waited for: no scale is there.
class TNoWaiting : public TClock {
public:
    TTimePoint Now() const override { return {}; }
    void Sleep(TMilliseconds) override {}
};

}  // namespace

// A scale that accepts everything and remembers only the hash of what it got.
class TArticleDigest::TRecorder : public TDevComm {
public:
    void Begin() { hash_ = kFnvBasis; }
    std::uint64_t Hash() const { return hash_; }

    std::string GetDescription() const override { return {}; }
    bool IsConnected() const override { return true; }
    bool Open() override { return true; }
    void Close() override {}
    bool SendData(const TCmdBuffer& Data) override {
        for (const std::uint8_t byte : Data)
            hash_ = FnvNext(hash_, byte);
        const std::span<const std::uint8_t> frame(Data);
        const TCmdBuffer body = ShiftDecode(frame.subspan(1, frame.size() - 2));
        reply_ = EncodeRequest(body.at(0), body.at(1), kAccepted);
        reply_.front() = kReplyStart;
        return true;
    }
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t, std::uint8_t, std::int32_t) override {
        Reply = reply_;
        return kReadOk;
    }

private:
    std::uint64_t hash_ = kFnvBasis;
    TCmdBuffer reply_{};
};

TArticleDigest::TArticleDigest(const TScaleRec& rec, const TScaleVersion& version)
    : rec_(rec), version_(version), clock_(std::make_unique<TNoWaiting>()) {
    auto recorder = std::make_unique<TRecorder>();
    recorder_ = recorder.get();
    driver_ = std::make_unique<TElicomScale>(std::move(recorder), false, *clock_);
    driver_->ScaleType = rec.ScaleType;
    driver_->Address = rec.CommType == kCommSerial ? rec.ScaleAddr : std::uint8_t{0};
}

TArticleDigest::~TArticleDigest() = default;

std::uint64_t TArticleDigest::Of(const TPLUD& plu, std::int32_t uncutScaleNumber) {
    recorder_->Begin();
    TArticleWriter(*driver_, rec_, version_).Write(plu, uncutScaleNumber);
    return recorder_->Hash();
}

}  // namespace tolvane

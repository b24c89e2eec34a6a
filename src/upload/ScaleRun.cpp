#include "upload/ScaleRun.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "config/SerialSpeeds.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "upload/ArticleLineBuilder.h"
#include "upload/LogLines.h"
#include "upload/RunMarks.h"

namespace tolvane {
namespace {

constexpr std::string_view kUnknownSpeed = "N/A";

}  // namespace

std::string ConnectionText(const TScaleRec& rec) {
    constexpr std::size_t kHostLength = 21;
    std::string text("Хост: "_cp1251);
    text += rec.TCPAddress.View();
    text.resize(std::min(text.size(), kHostLength));
    if (rec.CommType == kCommSerial) {
        text += " Скорост: "_cp1251;
        const TSerialSpeed* speed = SerialSpeed(rec.BaudRate);
        text += speed != nullptr ? speed->runCaption : kUnknownSpeed;
    } else if (IsNetworkConnection(rec.CommType)) {
        text += " Порт: "_cp1251;
        text += std::to_string(rec.TCPPort);
    }
    return text;
}

TScaleRun::TScaleRun(TScaleFactory& factory, TClock& clock, TRunView& view, TRunStop& stop,
                     const TRegionalSettings& regional)
    : view_(view),
      stop_(stop),
      regional_(regional),
      session_(factory, clock, view, stop, regional.decimalSeparator) {}

template <class Body>
void TScaleRun::Guarded(Body body) noexcept {
    try {
        body();
    } catch (...) {
        ShowCurrentError();
    }
    session_.Close();
}

void TScaleRun::ShowCurrentError() noexcept {
    try {
        view_.ShowRunError(MessageOfCurrentException());
    } catch (...) {
        view_.ShowMemoryError();
    }
}

bool TScaleRun::BeginLog(const std::vector<TScaleObj>& items) {
    view_.ClearLog();
    if (!items.empty()) return true;
    view_.Log(NoScalesLine());
    return false;
}

void TScaleRun::EndLog(bool anyChecked) {
    if (!anyChecked) view_.Log(NoScaleCheckedLine());
    session_.LastError.clear();
    view_.SetConnection({});
    view_.SetProgress({});
    view_.ShowCount({});
    view_.Log(SeparatorLine());
}

std::size_t TScaleRun::CountLines(const std::vector<TScaleObj>& items, const TRunArticles& articles,
                                  TLineChoices choices) const {
    std::vector<std::int32_t> numbers;
    for (const TScaleObj& item : items) {
        if (item.Rec.Checked) numbers.push_back(item.Rec.ScaleNumb);
    }
    return TArticleLineBuilder(*articles.table, choices, regional_, {})
        .CountLines(articles.rows, numbers);
}

void TScaleRun::LogStart(const std::string& name) {
    view_.Log(SeparatorLine());
    view_.Log(StartLine(name));
}

bool TScaleRun::Connect(const TScaleRec& rec) {
    view_.SetConnection(ConnectionText(rec));
    if (!IsKnownConnection(rec.CommType)) {
        session_.LastError = "Невалиден тип на комуникация с везна."_cp1251;
        return false;
    }
    if (!session_.InitComm(rec)) return false;
    view_.Log(ConnectedLine());
    return true;
}

void TScaleRun::RunListed(const std::vector<TScaleObj>& items, const TRunArticles& articles,
                          TLineChoices choices, bool write) noexcept {
    Guarded([&] {
        if (!BeginLog(items)) return;
        stop_.TakeBack();
        view_.SetChoicesEnabled(false);
        view_.SetRunning(true);
        session_.Progress = {};
        linesLater_ = CountLines(items, articles, choices);
        bool anyChecked = false;
        for (const TScaleObj& item : items) {
            if (!item.Rec.Checked || stop_.IsAbandoned()) continue;
            anyChecked = true;
            ProcessListed(item.Rec, articles, choices, write);
        }
        EndLog(anyChecked || stop_.IsAbandoned());
        view_.SetChoicesEnabled(true);
        view_.SetRunning(false);
    });
}

void TScaleRun::ProcessListed(const TScaleRec& rec, const TRunArticles& articles,
                              TLineChoices choices, bool write) {
    const TArticleLineBuilder builder(
        *articles.table, choices, regional_,
        [this](std::string_view line) { view_.Log(std::string(line)); });
    std::vector<std::string> lines;
    builder.Build(articles.rows, rec.ScaleNumb, lines);
    linesLater_ -= std::min(linesLater_, lines.size());
    session_.Progress.NextScale(lines.size(), linesLater_);
    view_.ShowCount(session_.Progress.Count());

    const std::string name = rec.ScaleName.Str();
    LogStart(name);
    bool succeeded = Connect(rec);
    if (succeeded && write) {
        succeeded = session_.ProcessUpload(lines, rec);
    } else if (succeeded && !lines.empty()) {
        // Without lines ProcessDelete would delete every article; here no lines mean that no
        // article of the run is for this scale.
        succeeded = session_.ProcessDelete(lines);
    }
    session_.Close();
    if (succeeded) {
        view_.Log(WrittenLine(name));
    } else {
        view_.Log(session_.LastError);
        view_.Log(NotWrittenLine(name));
    }
    view_.Log({});
}

void TScaleRun::RunDeleteEverything(const std::vector<TScaleObj>& items,
                                    const TRunMarks& marks) noexcept {
    Guarded([&] {
        if (!BeginLog(items)) return;
        session_.Progress = {};
        bool anyChecked = false;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (!marks.IsSet(i) || stop_.IsAbandoned()) continue;
            anyChecked = true;
            std::size_t later = 0;
            for (std::size_t next = i + 1; next < items.size(); ++next)
                later += marks.IsSet(next) ? 1 : 0;
            session_.Progress.NextWholeScale(later);
            view_.ShowCount(session_.Progress.Count());
            DeleteEverythingIn(items[i].Rec);
        }
        EndLog(anyChecked || stop_.IsAbandoned());
        view_.SetRunning(false);
    });
}

void TScaleRun::DeleteEverythingIn(const TScaleRec& rec) {
    const std::string name = rec.ScaleName.Str();
    LogStart(name);
    // Each scale begins without a stop. A stop while it is being connected counts.
    stop_.TakeBack();
    bool succeeded = Connect(rec);
    if (succeeded) {
        view_.SetRunning(true);
        succeeded = session_.ProcessDelete({});
    }
    session_.Close();
    if (!succeeded) view_.Log(session_.LastError);
    view_.Log(succeeded ? AllDeletedLine(name) : NotAllDeletedLine(name));
}

}  // namespace tolvane
